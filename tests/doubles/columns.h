#pragma once

#include <map>
#include <string>

#include "doubles/double.h"
#include "qal/columns.h"

namespace doubles {

/// The editors' columns: gives each new key the next handle, 1, 2, …
class StubColumnService : public Double<qal::IQColumnService> {
 public:
  static constexpr qal::Guid kService = qal::iid::kColumnService;
  using Double::Double;
  std::map<std::string, std::uint32_t> columns;
  qal::IQColumnClient* client = nullptr;

  qal::Status UnregisterColumn(std::uint32_t column) override {
    std::erase_if(columns, [column](const auto& each) { return each.second == column; });
    return Log("columns.UnregisterColumn", column);
  }
  qal::Status ShowColumn(std::uint32_t column) override { return Log("columns.ShowColumn", column); }
  qal::Status AddFile(qal::WideText file, std::uint32_t column, std::uint32_t mode,
                      std::uint32_t state) override {
    return Log("columns.AddFile", file, column, mode, state);
  }
  qal::Status RemoveFile(qal::WideText file, std::uint32_t column) override {
    return Log("columns.RemoveFile", file, column);
  }
  qal::Status SetMode(qal::WideText file, std::uint32_t column, std::uint32_t mode) override {
    return Log("columns.SetMode", file, column, mode);
  }
  qal::Status SetState(qal::WideText file, std::uint32_t column, std::uint32_t state) override {
    return Log("columns.SetState", file, column, state);
  }
  qal::Status RefreshFile(qal::WideText file, std::uint32_t column, std::int32_t first,
                          std::int32_t last) override {
    return Log("columns.RefreshFile", file, column, first, last);
  }
  qal::Status UpdateColumns(std::uint32_t zero) override { return Log("columns.UpdateColumns", zero); }
  qal::Status RefreshLines(const qal::WideText* file, std::uint32_t column, std::int32_t first,
                           std::int32_t last) override {
    return Log("columns.RefreshLines", file ? *file : nullptr, column, first, last);
  }
  qal::Status RegisterColumn(qal::WideText key, qal::IQColumnClient* newClient, std::uint32_t* column,
                             std::uint32_t id, std::uint32_t kind, qal::WideText title, std::uint32_t images,
                             std::int32_t unset, std::uint32_t width, std::uint32_t six,
                             std::uint32_t sixteen, std::uint32_t value,
                             const qal::Guid* identifier) override {
    client = newClient;
    *column = static_cast<std::uint32_t>(columns.size()) + 1;
    columns[platform::Narrow(key)] = *column;
    return Log("columns.RegisterColumn", key, id, kind, title, images, unset, width, six, sixteen, value,
               identifier);
  }
  qal::Status FindColumn(qal::WideText key, std::uint32_t* column) override {
    const auto status = Log("columns.FindColumn", key);
    const auto found = columns.find(platform::Narrow(key));
    return found == columns.end() ? qal::kFail : Give(status, column, found->second);
  }
  qal::Status AttachClient(std::uint32_t column, qal::IQColumnClient* newClient) override {
    client = newClient;
    return Log("columns.AttachClient", column);
  }
};

}  // namespace doubles
