#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "qal/all.h"
#include "view/coverage_ctrl.h"

namespace coverage {

/// The component's columns "Coverage" and "Coverage - ASM" in the IDE's editors: their registration and what
/// the IDE asks of them. While the component is inactive every operation fails (GetColumnTitle gives nothing)
/// and nothing changes; so it does when a place to write to is null. Column ids are the component's, handles
/// the column service's. UI thread only.
class EditorColumns : public qal::IQColumnClient {
 public:
  /// Registers both columns, or attaches to those that the IDE knows already. Without the column service
  /// there are none. Host and view are borrowed until UnregisterColumns.
  void RegisterColumns(qal::IQHost* hostObject, CJepCoverageCtrl* viewControl);
  /// Forgets the per-file modes and states and unregisters the columns.
  void UnregisterColumns();
  /// The view goes away; what the IDE asks of its marks fails from now on.
  void ForgetView();

  qal::Status FileOpened(qal::WideText file, std::uint32_t column) override;
  qal::Status FileClosed(qal::WideText file, std::uint32_t column) override;
  qal::Status FileChanged(qal::WideText file, std::uint32_t column, std::uint32_t first,
                          std::uint32_t second) override;
  qal::Status LinesInserted(qal::WideText file, std::uint32_t column, std::uint32_t line,
                            std::uint32_t count) override;
  qal::Status LinesDeleted(qal::WideText file, std::uint32_t column, std::uint32_t line,
                           std::uint32_t count) override;
  qal::Status Reserved8(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t,
                        std::uintptr_t, std::uintptr_t) override {
    return qal::kFail;
  }
  qal::Status SetColumnState(std::uint32_t column, std::uint32_t state) override;
  qal::Status SetFileColumnState(qal::WideText file, std::uint32_t column, std::uint32_t state) override;
  qal::Status SetColumnMode(std::uint32_t column, std::uint32_t mode) override;
  qal::Status SetFileColumnMode(qal::WideText file, std::uint32_t column, std::uint32_t mode) override;
  qal::Status GetColumnImage(std::int32_t index, std::uint32_t imageId, std::uint32_t column,
                             qal::Variant* image, qal::Variant* mask, std::uint32_t* size) override;
  qal::Status GetLineImageMask(std::uint32_t line, qal::WideText file, std::uint32_t column,
                               std::uint32_t* mask) override;
  qal::Status GetColumnOptions(std::uint32_t* first, std::uint32_t* second, std::uintptr_t, std::uintptr_t,
                               std::uintptr_t) override;
  qal::Status GetLineText(char16_t** text, std::int32_t* width, qal::WideText file, std::uint32_t column,
                          std::uint32_t line) override;
  qal::Status GetColumnTitle(const std::uint32_t* handle, char16_t** title, std::uintptr_t) override;

 private:
  /// One of the two columns by the id that the component gave it; nothing for any other id.
  struct Column {
    EditorColumn which = EditorColumn::kSource;
    std::uint32_t* handle = nullptr;
    std::uint32_t* state = nullptr;
    std::uint32_t* mode = nullptr;
    explicit operator bool() const { return handle != nullptr; }
  };
  Column SourceColumn();
  Column AsmColumn();
  Column Find(std::uint32_t id);

  /// Does `act` to the column, if there is one of this id; kFail while another session is current.
  template <class Act>
  qal::Status WithColumn(std::uint32_t id, Act act);

  bool Active() const;
  EntryListener* ViewEntries() const { return view == nullptr ? nullptr : view->Entries(); }
  qal::IQColumnService* Service() const;
  void Register(qal::IQColumnService& service, const char* key, std::uint32_t id, const Column& column,
                const std::string& title, std::uint32_t value);
  qal::Status MoveLines(qal::WideText file, std::uint32_t id, std::uint32_t line, std::int64_t count);
  void RefreshLines(const std::string& file, std::uint32_t handle, std::int32_t first);
  std::uint32_t ImageMask(std::int32_t mark) const;

  qal::IQHost* columnHost = nullptr;
  CJepCoverageCtrl* view = nullptr;

  std::uint32_t sourceColumnId = 0;
  std::uint32_t sourceColumn = 0;
  std::uint32_t asmColumnId = 0;
  std::uint32_t asmColumn = 0;
  std::uint32_t columnWidth = 20;
  std::uint32_t columnKind = 2;
  std::uint32_t columnImages = 0;
  std::string sourceTitle = "Coverage";
  std::string asmTitle = "Coverage - ASM";
  std::vector<std::string> openFiles;
  qal::IQHost* filesHost = nullptr;  ///< the host whose files are open
  std::int32_t asmImageIds[3] = {-1, -1, -1};
  std::uint32_t sourceState = 1;
  std::uint32_t sourceMode = 1;
  std::uint32_t asmState = 1;
  std::uint32_t asmMode = 1;
};

}  // namespace coverage
