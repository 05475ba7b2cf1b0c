#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "qal/columns.h"
#include "workbench/services/service.h"

namespace workbench {

/// The columns that components add to the editors. One object with the three tables of the contract. Main
/// thread.
class Columns final : public qal::IQColumnService {
 public:
  struct Column {
    std::uint32_t handle;
    std::uint32_t id;  ///< the client's own
    std::string key;
    std::string title;
    qal::IQColumnClient* client;
    std::uint32_t kind;
    std::uint32_t width;
    std::uint32_t mode = 0;
    std::uint32_t state = 0;
    bool shown = false;
    bool registered = true;  ///< a key is remembered after its column is withdrawn, so that its handle stays
  };

  /// Called when lines of a column are to be shown again; an empty file means every file.
  using Refreshed = std::function<void(const std::string& file, const Column& column)>;
  void SetRefreshed(Refreshed refreshed) { refreshed_ = std::move(refreshed); }

  /// Registered columns that are shown, in the order of their handles.
  std::vector<const Column*> Shown() const;
  std::string KeyOf(std::uint32_t handle) const;
  /// The component that made the columns is gone.
  void Forget();

  // qal::IQUnknown, of all three tables
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  // qal::IQColumns
  qal::Status UnregisterColumn(std::uint32_t column) override;
  qal::Status ShowColumn(std::uint32_t column) override;
  qal::Status AddFile(qal::WideText file, std::uint32_t column, std::uint32_t mode,
                      std::uint32_t state) override;
  qal::Status RemoveFile(qal::WideText file, std::uint32_t column) override;
  qal::Status SetMode(qal::WideText file, std::uint32_t column, std::uint32_t mode) override;
  qal::Status SetState(qal::WideText file, std::uint32_t column, std::uint32_t state) override;
  qal::Status RefreshFile(qal::WideText file, std::uint32_t column, std::int32_t first,
                          std::int32_t last) override;
  qal::Status UpdateColumns(std::uint32_t zero) override;
  // qal::IQColumnRefresh
  qal::Status RefreshLines(const qal::WideText* file, std::uint32_t column, std::int32_t first,
                           std::int32_t last) override;
  // qal::IQColumnRegistry
  qal::Status RegisterColumn(qal::WideText key, qal::IQColumnClient* client, std::uint32_t* column,
                             std::uint32_t id, std::uint32_t kind, qal::WideText title, std::uint32_t images,
                             std::int32_t unset, std::uint32_t width, std::uint32_t six,
                             std::uint32_t sixteen, std::uint32_t value,
                             const qal::Guid* identifier) override;
  qal::Status FindColumn(qal::WideText key, std::uint32_t* column) override;
  qal::Status AttachClient(std::uint32_t column, qal::IQColumnClient* clientOrNull) override;

 private:
  Column* Find(std::uint32_t handle);
  qal::Status Refresh(qal::WideText file, std::uint32_t column);

  std::vector<Column> columns_;
  std::set<std::pair<std::uint32_t, std::string>> files_;  // columns' files, by handle and lower-case name
  Refreshed refreshed_;
};

}  // namespace workbench
