#pragma once

#include <map>
#include <string>

#include "doubles/double.h"
#include "qal/columns.h"

namespace doubles {

/// The editors' columns: gives each new key the next handle, 1, 2, …
struct StubColumnService : Service<qal::IQColumnService, qal::iid::kColumnService, "columns"> {
  using Service::Service;
  std::map<std::string, Number> columns;
  qal::IQColumnClient* client = nullptr;

  Status UnregisterColumn(Number column) override {
    std::erase_if(columns, [column](const auto& each) { return each.second == column; });
    return Log("UnregisterColumn", column);
  }
  Status ShowColumn(Number column) override { return Log("ShowColumn", column); }
  Status AddFile(WideText file, Number column, Number mode, Number state) override {
    return Log("AddFile", file, column, mode, state);
  }
  Status RemoveFile(WideText file, Number column) override { return Log("RemoveFile", file, column); }
  Status SetMode(WideText file, Number column, Number mode) override {
    return Log("SetMode", file, column, mode);
  }
  Status SetState(WideText file, Number column, Number state) override {
    return Log("SetState", file, column, state);
  }
  Status RefreshFile(WideText file, Number column, std::int32_t first, std::int32_t last) override {
    return Log("RefreshFile", file, column, first, last);
  }
  Status UpdateColumns(Number zero) override { return Log("UpdateColumns", zero); }
  Status RefreshLines(const WideText* file, Number column, std::int32_t first, std::int32_t last) override {
    return Log("RefreshLines", file ? *file : nullptr, column, first, last);
  }
  Status RegisterColumn(WideText key, qal::IQColumnClient* newClient, Number* column, Number id, Number kind,
                        WideText title, Number images, std::int32_t unset, Number width, Number six,
                        Number sixteen, Number value, const Guid* identifier) override {
    client = newClient;
    *column = static_cast<Number>(columns.size()) + 1;
    columns[platform::Narrow(key)] = *column;
    return Log("RegisterColumn", key, id, kind, title, images, unset, width, six, sixteen, value, identifier);
  }
  Status FindColumn(WideText key, Number* column) override {
    const auto status = Log("FindColumn", key);
    const auto found = columns.find(platform::Narrow(key));
    return found == columns.end() ? qal::kFail : Give(status, column, found->second);
  }
  Status AttachClient(Number column, qal::IQColumnClient* newClient) override {
    client = newClient;
    return Log("AttachClient", column);
  }
};

}  // namespace doubles
