#include "workbench/services/open_files.h"

#include <algorithm>

#include "platform/text.h"

namespace workbench {

template <class Tell>
void OpenFiles::TellColumns(const std::string& path, Tell tell) const {
  const platform::Wide name(path);
  for (const auto* column : columns_.Shown()) {
    if (column->kind != kDisassemblyKind) tell(*column->client, name.get(), column->id);
  }
}

const OpenFiles::File* OpenFiles::Find(const std::string& file) const {
  const auto found = files_.find(platform::ToLower(file));
  return found == files_.end() ? nullptr : &found->second;
}

void OpenFiles::Open(const std::string& file, const std::vector<std::string>& lines) {
  if (IsOpen(file)) return;
  File& opened = files_[platform::ToLower(file)];
  opened.path = file;
  for (const std::string& text : lines)
    opened.lines.push_back({text, static_cast<std::uint32_t>(opened.lines.size() + 1)});
  TellColumns(file, [](qal::IQColumnClient& client, qal::WideText name, std::uint32_t id) {
    client.FileOpened(name, id);
  });
}

bool OpenFiles::Close(const std::string& file) {
  if (files_.erase(platform::ToLower(file)) == 0) return false;
  TellColumns(file, [](qal::IQColumnClient& client, qal::WideText name, std::uint32_t id) {
    client.FileClosed(name, id);
  });
  return true;
}

std::vector<std::string> OpenFiles::Files() const {
  std::vector<std::string> files;
  for (const auto& [key, file] : files_) files.push_back(file.path);
  return files;
}

std::uint32_t OpenFiles::LineCount(const std::string& file) const {
  const File* const open = Find(file);
  return open ? static_cast<std::uint32_t>(open->lines.size()) : 0;
}

std::optional<std::string> OpenFiles::LineText(const std::string& file, std::uint32_t line) const {
  const File* const open = Find(file);
  if (!open || line == 0 || line > open->lines.size()) return std::nullopt;
  return open->lines[line - 1].text;
}

bool OpenFiles::Insert(const std::string& file, std::uint32_t line, std::uint32_t count) {
  File* const open = Find(file);
  if (!open || line == 0 || line > open->lines.size() + 1) return false;
  open->lines.insert(open->lines.begin() + (line - 1), count, Line{{}, 0});
  TellColumns(open->path, [&](qal::IQColumnClient& client, qal::WideText name, std::uint32_t id) {
    client.LinesInserted(name, id, line, count);
  });
  return true;
}

bool OpenFiles::Delete(const std::string& file, std::uint32_t line, std::uint32_t count) {
  File* const open = Find(file);
  if (!open || line == 0 || std::uint64_t{line} - 1 + count > open->lines.size()) return false;
  const auto first = open->lines.begin() + (line - 1);
  open->lines.erase(first, first + count);
  TellColumns(open->path, [&](qal::IQColumnClient& client, qal::WideText name, std::uint32_t id) {
    client.LinesDeleted(name, id, line, count);
  });
  return true;
}

std::optional<std::uint32_t> OpenFiles::LineNow(const std::string& file, std::uint32_t opened) const {
  const File* const open = Find(file);
  if (!open || opened == 0) return opened;
  const auto& lines = open->lines;
  const auto found =
      std::find_if(lines.begin(), lines.end(), [&](const Line& line) { return line.opened == opened; });
  if (found == lines.end()) return std::nullopt;
  return static_cast<std::uint32_t>(found - lines.begin() + 1);
}

std::optional<std::uint32_t> OpenFiles::LineOpened(const std::string& file, std::uint32_t now) const {
  const File* const open = Find(file);
  if (!open) return now;
  if (now == 0 || now > open->lines.size() || open->lines[now - 1].opened == 0) return std::nullopt;
  return open->lines[now - 1].opened;
}

void OpenFiles::Announce() const {
  for (const auto& [key, file] : files_) {
    TellColumns(file.path, [](qal::IQColumnClient& client, qal::WideText name, std::uint32_t id) {
      client.FileOpened(name, id);
    });
  }
}

}  // namespace workbench
