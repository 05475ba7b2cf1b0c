#include "workbench/services/columns.h"

#include <algorithm>

#include "platform/text.h"

namespace workbench {
namespace {

constexpr std::size_t kMostColumns = 256;

}  // namespace

std::vector<const Columns::Column*> Columns::Shown() const {
  std::vector<const Column*> shown;
  for (const Column& column : columns_) {
    if (column.registered && column.shown && column.client) shown.push_back(&column);
  }
  return shown;
}

std::string Columns::KeyOf(std::uint32_t handle) const {
  for (const Column& column : columns_) {
    if (column.handle == handle) return column.key;
  }
  return {};
}

void Columns::Forget() {
  for (Column& column : columns_) {
    column.registered = false;
    column.client = nullptr;
  }
  files_.clear();
}

Columns::Column* Columns::Find(std::uint32_t handle) {
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const Column& column) {
    return column.handle == handle && column.registered;
  });
  return found == columns_.end() ? nullptr : &*found;
}

qal::Status Columns::QueryInterface(const qal::Guid* iid, void** out) {
  if (!out) return qal::kFail;
  *out = nullptr;
  if (!iid || !(*iid == qal::iid::kColumnService || *iid == qal::iid::kUnknown)) return qal::kNoInterface;
  *out = static_cast<qal::IQColumns*>(this);
  return qal::kOk;
}

qal::Status Columns::UnregisterColumn(std::uint32_t column) {
  Column* found = Find(column);
  if (!found) return qal::kFail;
  found->registered = false;
  found->client = nullptr;
  std::erase_if(files_, [&](const auto& file) { return file.first == column; });
  return qal::kOk;
}

qal::Status Columns::ShowColumn(std::uint32_t column) {
  Column* found = Find(column);
  if (!found) return qal::kFail;
  found->shown = true;
  return qal::kOk;
}

qal::Status Columns::AddFile(qal::WideText file, std::uint32_t column, std::uint32_t mode,
                             std::uint32_t state) {
  return Guarded([&]() -> qal::Status {
    Column* found = Find(column);
    if (!found) return qal::kFail;
    files_.emplace(column, platform::ToLower(platform::Narrow(file)));
    found->mode = mode;
    found->state = state;
    return qal::kOk;
  });
}

qal::Status Columns::RemoveFile(qal::WideText file, std::uint32_t column) {
  return Guarded([&]() -> qal::Status {
    return files_.erase({column, platform::ToLower(platform::Narrow(file))}) ? qal::kOk : qal::kFail;
  });
}

qal::Status Columns::SetMode(qal::WideText file, std::uint32_t column, std::uint32_t mode) {
  Column* found = Find(column);
  if (!found) return qal::kFail;
  if (qal::TextLength(file) == 0) found->mode = mode;
  return Refresh(file, column);
}

qal::Status Columns::SetState(qal::WideText file, std::uint32_t column, std::uint32_t state) {
  Column* found = Find(column);
  if (!found) return qal::kFail;
  if (qal::TextLength(file) == 0) found->state = state;
  return Refresh(file, column);
}

qal::Status Columns::Refresh(qal::WideText file, std::uint32_t column) {
  return Guarded([&]() -> qal::Status {
    const Column* found = Find(column);
    if (!found) return qal::kFail;
    if (refreshed_) refreshed_(platform::Narrow(file), *found);
    return qal::kOk;
  });
}

qal::Status Columns::RefreshFile(qal::WideText file, std::uint32_t column, std::int32_t, std::int32_t) {
  return Refresh(file, column);
}

qal::Status Columns::UpdateColumns(std::uint32_t) {
  return Guarded([&] {
    for (const Column* column : Shown()) {
      if (refreshed_) refreshed_({}, *column);
    }
    return qal::kOk;
  });
}

qal::Status Columns::RefreshLines(const qal::WideText* file, std::uint32_t column, std::int32_t,
                                  std::int32_t) {
  return Refresh(file ? *file : nullptr, column);
}

qal::Status Columns::RegisterColumn(qal::WideText key, qal::IQColumnClient* client, std::uint32_t* column,
                                    std::uint32_t id, std::uint32_t kind, qal::WideText title, std::uint32_t,
                                    std::int32_t, std::uint32_t width, std::uint32_t, std::uint32_t,
                                    std::uint32_t, const qal::Guid*) {
  if (!column || !client) return qal::kFail;
  *column = 0;
  return Guarded([&]() -> qal::Status {
    const std::string text = platform::Narrow(key);
    auto found = std::find_if(columns_.begin(), columns_.end(),
                              [&](const Column& known) { return known.key == text; });
    if (text.empty() || (found != columns_.end() && found->registered)) return qal::kFail;
    if (found == columns_.end()) {
      if (columns_.size() >= kMostColumns) return qal::kFail;
      found = columns_.insert(columns_.end(), Column{});
      found->handle = static_cast<std::uint32_t>(columns_.size());
      found->key = text;
    }
    found->id = id;
    found->title = platform::Narrow(title);
    found->client = client;
    found->kind = kind;
    found->width = width;
    found->registered = true;
    found->shown = false;
    *column = found->handle;
    return qal::kOk;
  });
}

qal::Status Columns::FindColumn(qal::WideText key, std::uint32_t* column) {
  if (!column) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const std::string text = platform::Narrow(key);
    for (const Column& known : columns_) {
      if (known.key != text || !known.registered) continue;
      *column = known.handle;
      return qal::kOk;
    }
    return qal::kFail;
  });
}

qal::Status Columns::AttachClient(std::uint32_t column, qal::IQColumnClient* clientOrNull) {
  Column* found = Find(column);
  if (!found) return qal::kFail;
  found->client = clientOrNull;
  return qal::kOk;
}

}  // namespace workbench
