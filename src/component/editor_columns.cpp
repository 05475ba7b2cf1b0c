#include "component/editor_columns.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "component/bitmap_images.h"
#include "model/services.h"
#include "platform/text.h"
#include "util/entry.h"
#include "util/resource_ids.h"
#include "view/active_session.h"

namespace coverage {
namespace {

constexpr char kSourceKey[] = "QALCoverageColumnKey";
constexpr char kAsmKey[] = "QALCoverageAsmColumnKey";
constexpr std::uint32_t kSourceValue = 0;
constexpr std::uint32_t kAsmValue = 12;
constexpr std::uint32_t kSourceKind = 2;
constexpr std::uint32_t kAsmKind = 1;
constexpr std::uint32_t kAsmImages = 3;
constexpr std::int32_t kLeastWidth = 6;
constexpr std::int32_t kNoWidth = -1;
constexpr std::int32_t kFirstLine = 1;
constexpr std::int32_t kToTheEnd = -1;
constexpr qal::Status kNoLineText = 1;
constexpr qal::Status kOptionsGiven = 1;

}  // namespace

bool EditorColumns::Active() const { return ComponentActive(columnHost); }

qal::IQColumnService* EditorColumns::Service() const {
  return FindService<qal::IQColumnService>(columnHost, qal::iid::kColumnService);
}

EditorColumns::Column EditorColumns::SourceColumn() {
  return {EditorColumn::kSource, &sourceColumn, &sourceState, &sourceMode};
}

EditorColumns::Column EditorColumns::AsmColumn() {
  return {EditorColumn::kDisassembly, &asmColumn, &asmState, &asmMode};
}

EditorColumns::Column EditorColumns::Find(std::uint32_t id) {
  if (id == sourceColumnId) return SourceColumn();
  if (id == asmColumnId) return AsmColumn();
  return {};
}

// Registration.

void EditorColumns::RegisterColumns(qal::IQHost* hostObject, CJepCoverageCtrl* viewControl) {
  columnHost = hostObject;
  view = viewControl;
  if (std::exchange(filesHost, hostObject) != hostObject) openFiles.clear();
  sourceColumn = asmColumn = 0;
  sourceColumnId = 0;
  columnWidth = 20;
  columnKind = kSourceKind;
  columnImages = 0;
  sourceState = sourceMode = asmState = asmMode = 1;
  sourceTitle = "Coverage";
  asmTitle = "Coverage - ASM";
  if (const std::string title = Text(strings::kCoverage); !title.empty()) sourceTitle = title;
  if (const std::string title = Text(strings::kCoverageAsm); !title.empty()) asmTitle = title;

  qal::IQColumnService* const service = Service();
  if (service == nullptr) return;
  Register(*service, kSourceKey, sourceColumnId, SourceColumn(), sourceTitle, kSourceValue);

  asmColumnId = 1;
  columnKind = kAsmKind;
  columnImages = kAsmImages;
  std::fill(std::begin(asmImageIds), std::end(asmImageIds), -1);
  Register(*service, kAsmKey, asmColumnId, AsmColumn(), asmTitle, kAsmValue);
}

void EditorColumns::Register(qal::IQColumnService& service, const char* key, std::uint32_t id,
                             const Column& column, const std::string& title, std::uint32_t value) {
  std::uint32_t handle = 0;
  const platform::Wide wideKey(key);
  if (qal::Succeeded(service.FindColumn(wideKey.get(), &handle))) {
    service.AttachClient(handle, this);
  } else {
    service.RegisterColumn(wideKey.get(), this, &handle, id, columnKind, platform::Wide(title).get(),
                           columnImages, -1, columnWidth, 6, 16, value, &qal::id::kColumnRegistration);
  }
  *column.handle = handle;
  if (auto* const frame = FindService<qal::IQFrame>(columnHost, qal::iid::kFrame)) {
    std::uint32_t kept = 0;
    if (frame->GetColumnSetting(qal::id::kColumnSetting, qal::id::kColumnSetting, handle, &kept) ==
        qal::kOk) {
      *column.state = kept;
    }
    service.SetState(nullptr, handle, *column.state);
  }
  view->SetColumn(column.which, handle);
  service.ShowColumn(handle);
}

void EditorColumns::UnregisterColumns() {
  if (qal::IQColumnService* const service = Service()) {
    service->UnregisterColumn(sourceColumn);
    service->UnregisterColumn(asmColumn);
  }
}

void EditorColumns::ForgetView() {
  view = nullptr;
  columnHost = nullptr;
}

template <class Act>
qal::Status EditorColumns::WithColumn(std::uint32_t id, Act act) {
  return Enter(
      ViewEntries(),
      [&] {
        if (!Active()) return qal::kFail;
        if (const Column column = Find(id)) act(column);
        return qal::kOk;
      },
      qal::kFail);
}

// Files and lines of the editors.

qal::Status EditorColumns::FileOpened(qal::WideText file, std::uint32_t column) {
  return WithColumn(column, [&](const Column& opened) {
    const std::string name = platform::Narrow(file);
    const bool source = opened.which == EditorColumn::kSource;
    const std::string lower = platform::ToLower(name);
    if (qal::IQColumnService* const service = Service()) {
      service->AddFile(platform::Wide(source ? lower : name).get(), *opened.handle, *opened.mode,
                       *opened.state);
    }
    if (source && std::find(openFiles.begin(), openFiles.end(), lower) == openFiles.end()) {
      openFiles.push_back(lower);
    }
  });
}

qal::Status EditorColumns::FileClosed(qal::WideText file, std::uint32_t column) {
  return WithColumn(column, [&](const Column& closed) {
    if (closed.which != EditorColumn::kSource) return;
    const std::string lower = platform::ToLower(platform::Narrow(file));
    if (qal::IQColumnService* const service = Service()) {
      service->RemoveFile(platform::Wide(lower).get(), sourceColumn);
    }
    std::erase(openFiles, lower);
  });
}

void EditorColumns::RefreshLines(const std::string& file, std::uint32_t handle, std::int32_t first) {
  qal::IQColumnService* const service = Service();
  if (service == nullptr) return;
  const platform::Wide name(file);
  const qal::WideText text = name.get();
  service->RefreshLines(&text, handle, first, kToTheEnd);
}

qal::Status EditorColumns::FileChanged(qal::WideText file, std::uint32_t column, std::uint32_t,
                                       std::uint32_t) {
  return WithColumn(column, [&](const Column& changed) {
    RefreshLines(platform::ToLower(platform::Narrow(file)), *changed.handle, kFirstLine);
  });
}

qal::Status EditorColumns::MoveLines(qal::WideText file, std::uint32_t id, std::uint32_t line,
                                     std::int64_t count) {
  return WithColumn(id, [&](const Column& column) {
    const std::string lower = platform::ToLower(platform::Narrow(file));
    using Limits = std::numeric_limits<std::int32_t>;
    const auto lines =
        static_cast<std::int32_t>(std::clamp<std::int64_t>(count, Limits::min(), Limits::max()));
    if (view != nullptr) view->Marks().Move(column.which, lower, line, lines);
    RefreshLines(lower, *column.handle, static_cast<std::int32_t>(line));
  });
}

qal::Status EditorColumns::LinesInserted(qal::WideText file, std::uint32_t column, std::uint32_t line,
                                         std::uint32_t count) {
  return MoveLines(file, column, line, std::int64_t{count});
}

qal::Status EditorColumns::LinesDeleted(qal::WideText file, std::uint32_t column, std::uint32_t line,
                                        std::uint32_t count) {
  return MoveLines(file, column, line, -std::int64_t{count});
}

// States and modes.

qal::Status EditorColumns::SetColumnState(std::uint32_t column, std::uint32_t state) {
  return WithColumn(column, [&](const Column& changed) {
    *changed.state = state;
    if (qal::IQColumnService* const service = Service()) {
      service->SetState(nullptr, *changed.handle, state);
      for (const std::string& file : openFiles) {
        service->RefreshFile(platform::Wide(file).get(), *changed.handle, kFirstLine, kToTheEnd);
      }
    }
    if (auto* const frame = FindService<qal::IQFrame>(columnHost, qal::iid::kFrame)) {
      frame->SetColumnSetting(qal::id::kColumnSetting, qal::id::kColumnSetting, *changed.handle, state);
    }
  });
}

qal::Status EditorColumns::SetFileColumnState(qal::WideText file, std::uint32_t column, std::uint32_t state) {
  return WithColumn(column, [&](const Column& changed) {
    if (qal::IQColumnService* const service = Service()) service->SetState(file, *changed.handle, state);
  });
}

qal::Status EditorColumns::SetColumnMode(std::uint32_t column, std::uint32_t mode) {
  return WithColumn(column, [&](const Column& changed) {
    *changed.mode = mode;
    if (qal::IQColumnService* const service = Service()) service->SetMode(nullptr, *changed.handle, mode);
  });
}

qal::Status EditorColumns::SetFileColumnMode(qal::WideText file, std::uint32_t column, std::uint32_t mode) {
  return WithColumn(column, [&](const Column& changed) {
    if (qal::IQColumnService* const service = Service()) service->SetMode(file, *changed.handle, mode);
  });
}

// Pictures, marks and titles.

qal::Status EditorColumns::GetColumnImage(std::int32_t index, std::uint32_t imageId, std::uint32_t column,
                                          qal::Variant* image, qal::Variant* mask, std::uint32_t* size) {
  return Enter(
      ViewEntries(),
      [&] {
        if (image == nullptr || mask == nullptr || size == nullptr || !Active()) return qal::kFail;
        const Column asked = Find(column);
        if (!asked || asked.which != EditorColumn::kDisassembly) return qal::kFail;
        *size = 0;
        if (index > static_cast<std::int32_t>(columnImages)) return qal::kFail;
        *image = {};
        *mask = {};
        if (index < 1 || index > static_cast<std::int32_t>(std::size(asmImageIds))) return qal::kOk;
        asmImageIds[index - 1] = static_cast<std::int32_t>(imageId);
        std::size_t bytes = 0;
        *image = BitmapImage(resource::kBitmapMarks[index - 1], &bytes);
        *mask = BitmapImage(resource::kBitmapMarkMask);
        *size = static_cast<std::uint32_t>(bytes);
        return qal::kOk;
      },
      qal::kFail);
}

std::uint32_t EditorColumns::ImageMask(std::int32_t mark) const {
  const int which = mark == line_mark::kTaken ? 0 : mark == line_mark::kNotTaken ? 1 : 2;
  if (which == 2 && mark != line_mark::kBoth) return 0;
  const std::int32_t id = asmImageIds[which];
  return id < 0 || id > 31 ? 0 : std::uint32_t{1} << id;
}

qal::Status EditorColumns::GetLineImageMask(std::uint32_t line, qal::WideText file, std::uint32_t column,
                                            std::uint32_t* mask) {
  return Enter(
      ViewEntries(),
      [&] {
        if (mask == nullptr || !Active()) return qal::kFail;
        const Column asked = Find(column);
        if (!asked || asked.which != EditorColumn::kDisassembly || view == nullptr) return qal::kFail;
        const auto mark = view->Marks().Mark(EditorColumn::kDisassembly, platform::Narrow(file), line);
        *mask = mark ? ImageMask(*mark) : 0;
        return *mask != 0 ? qal::kOk : qal::kFail;
      },
      qal::kFail);
}

qal::Status EditorColumns::GetColumnOptions(std::uint32_t* first, std::uint32_t* second, std::uintptr_t,
                                            std::uintptr_t, std::uintptr_t) {
  return Enter(
      ViewEntries(),
      [&] {
        if (first == nullptr || second == nullptr || !Active()) return qal::kFail;
        *first = 0;
        *second = 4;
        return kOptionsGiven;
      },
      qal::kFail);
}

qal::Status EditorColumns::GetLineText(char16_t** text, std::int32_t* width, qal::WideText file,
                                       std::uint32_t column, std::uint32_t line) {
  return Enter(
      ViewEntries(),
      [&] {
        if (text == nullptr || width == nullptr || !Active()) return qal::kFail;
        *text = nullptr;
        *width = 0;
        const Column asked = Find(column);
        if (!asked || view == nullptr) return kNoLineText;
        const auto mark = view->Marks().Mark(asked.which, platform::ToLower(platform::Narrow(file)), line);
        if (!mark) {
          *width = kNoWidth;
          return kNoLineText;
        }
        const std::string_view shown = MarkText(*mark);
        *width = std::max(kLeastWidth, static_cast<std::int32_t>(shown.size()));
        *text = platform::NewWide(shown);
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status EditorColumns::GetColumnTitle(const std::uint32_t* handle, char16_t** title, std::uintptr_t) {
  return Enter(
      ViewEntries(),
      [&] {
        if (title == nullptr) return qal::kFail;
        *title = nullptr;
        if (!Active()) return qal::kOk;
        std::string_view shown;
        if (handle != nullptr && *handle == sourceColumn) {
          shown = sourceTitle;
        } else if (handle != nullptr && *handle == asmColumn) {
          shown = asmTitle;
        }
        *title = platform::NewWide(shown);
        return qal::kOk;
      },
      qal::kFail);
}

}  // namespace coverage
