#pragma once

#include "qal/reserve.h"

/// The columns that a component adds to the IDE's source and disassembly editors. User-interface thread only.
namespace qal {

/// The component's side of its columns. `column` is the id that the component gave at registration. While the
/// component is inactive every operation answers kFail (GetColumnTitle 0) and does nothing.
struct IQColumnClient : IQUnknown {
  virtual Status FileOpened(WideText file, std::uint32_t column) = 0;  // slot 3
  virtual Status FileClosed(WideText file, std::uint32_t column) = 0;  // slot 4
  virtual Status FileChanged(WideText file, std::uint32_t column, std::uint32_t first,
                             std::uint32_t second) = 0;  // slot 5: the last two are not used
  virtual Status LinesInserted(WideText file, std::uint32_t column, std::uint32_t line,
                               std::uint32_t count) = 0;  // slot 6
  virtual Status LinesDeleted(WideText file, std::uint32_t column, std::uint32_t line,
                              std::uint32_t count) = 0;  // slot 7
  virtual Status Reserved8(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c, std::uintptr_t d,
                           std::uintptr_t e, std::uintptr_t f,
                           std::uintptr_t g) = 0;  // slot 8: answers kFail
  /// State and mode of the column: for every file, or for one.
  virtual Status SetColumnState(std::uint32_t column, std::uint32_t state) = 0;                     // slot 9
  virtual Status SetFileColumnState(WideText file, std::uint32_t column, std::uint32_t state) = 0;  // slot 10
  virtual Status SetColumnMode(std::uint32_t column, std::uint32_t mode) = 0;                       // slot 11
  virtual Status SetFileColumnMode(WideText file, std::uint32_t column, std::uint32_t mode) = 0;    // slot 12
  /// Picture `index` (1 to 3), which the IDE will know as `imageId`; `size` is its bytes, at most 1024. kFail
  /// and size 0 for an index past the last. The receiver clears both variants.
  virtual Status GetColumnImage(std::int32_t index, std::uint32_t imageId, std::uint32_t column,
                                Variant* image, Variant* mask, std::uint32_t* size) = 0;  // slot 13
  /// One bit for each image that marks the line; kFail when there is none.
  virtual Status GetLineImageMask(std::uint32_t line, WideText file, std::uint32_t column,
                                  std::uint32_t* mask) = 0;  // slot 14
  /// Gives 0 and 4; always 1.
  virtual Status GetColumnOptions(std::uint32_t* first, std::uint32_t* second, std::uintptr_t a,
                                  std::uintptr_t b,
                                  std::uintptr_t c) = 0;  // slot 15
  /// New text of a line's mark and its width in characters, 6 or more; 1 and width -1 when the line has none.
  virtual Status GetLineText(char16_t** text, std::int32_t* width, WideText file, std::uint32_t column,
                             std::uint32_t line) = 0;  // slot 16
  /// New title text of the column with that handle (not its id).
  virtual Status GetColumnTitle(const std::uint32_t* handle, char16_t** title,
                                std::uintptr_t unused) = 0;  // slot 17
};

/// The first column operations. `file` null means every file; `column` is the service's handle.
struct ColumnsTo10 : Reserve<IQUnknown, 3, 3> {
  virtual Status UnregisterColumn(std::uint32_t column) = 0;  // slot 4
  virtual Status ShowColumn(std::uint32_t column) = 0;        // slot 5
  virtual Status AddFile(WideText file, std::uint32_t column, std::uint32_t mode,
                         std::uint32_t state) = 0;                                        // slot 6
  virtual Status RemoveFile(WideText file, std::uint32_t column) = 0;                     // slot 7
  virtual Status SetMode(WideText file, std::uint32_t column, std::uint32_t mode) = 0;    // slot 8
  virtual Status SetState(WideText file, std::uint32_t column, std::uint32_t state) = 0;  // slot 9
  virtual Status RefreshFile(WideText file, std::uint32_t column, std::int32_t first,
                             std::int32_t last) = 0;  // slot 10: last -1 is the end
};

/// Column operations of the column service.
struct IQColumns : Reserve<ColumnsTo10, 11, 65> {
  virtual Status UpdateColumns(std::uint32_t zero) = 0;  // slot 66
};

/// Has the lines of a column asked for again.
struct IQColumnRefresh : IQUnknown {
  /// `file` points to a file name; null is every file. `last` -1 is the end.
  virtual Status RefreshLines(const WideText* file, std::uint32_t column, std::int32_t first,
                              std::int32_t last) = 0;  // slot 3
};

/// Where columns are registered.
struct IQColumnRegistry : Reserve<IQUnknown, 3, 3> {
  /// Gives the new column's handle. `unset` is -1; `value` is 0 for the source column and 12 for the
  /// disassembly column.
  virtual Status RegisterColumn(WideText key, IQColumnClient* client, std::uint32_t* column, std::uint32_t id,
                                std::uint32_t kind, WideText title, std::uint32_t images, std::int32_t unset,
                                std::uint32_t width, std::uint32_t six, std::uint32_t sixteen,
                                std::uint32_t value,
                                const Guid* identifier) = 0;  // slot 4
  /// Succeeds when a column with that key is registered already.
  virtual Status FindColumn(WideText key, std::uint32_t* column) = 0;                   // slot 5
  virtual Status AttachClient(std::uint32_t column, IQColumnClient* clientOrNull) = 0;  // slot 6
};

/// What GetService gives for iid::kColumnService: an object that begins with the three tables, one after the
/// other.
struct IQColumnService : IQColumns, IQColumnRefresh, IQColumnRegistry {};

}  // namespace qal
