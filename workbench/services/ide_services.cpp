#include "workbench/services/ide_services.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/message_box.h"
#include "platform/text.h"
#include "workbench/services/coverage_services.h"
#include "workbench/services/host.h"
#include "workbench/services/json_file.h"

namespace workbench {
namespace {

using platform::Narrow;

constexpr char kNumbers[] = "numbers";
constexpr char kTexts[] = "texts";
constexpr char kSections[] = "sections";
constexpr char kOptions[] = "message options";
constexpr char kColumns[] = "columns";

struct StatusText {
  qal::Status status;
  const char* text;
};
constexpr StatusText kStatusTexts[] = {
    {kRangeRefused, "The debugger cannot cover this address range."},
    {kRangeUnknown, "This address range is not registered with the debugger."},
    {kNothingLoaded, "No program is downloaded to the target."},
    {kNoSourceFile, "The program has no source file of this name."},
    {kNoExpression, "The expression is no address: it is made of numbers, symbols, +, -, * and brackets."},
    {qal::kNoInterface, "The debugger does not support this."},
    {qal::kFail, "The debugger cannot do this."},
};

std::string SectionKey(qal::WideText section, qal::WideText key) {
  return Narrow(section) + "\\" + Narrow(key);
}

qal::Status Stored(bool written) { return written ? qal::kOk : qal::kFail; }

}  // namespace

qal::Status SettingsStore::WriteInt(qal::WideText section, qal::WideText key, std::int32_t value) {
  return Guarded([&] { return Stored(file_.SetNumber(kSections, SectionKey(section, key), value)); });
}

qal::Status SettingsStore::SetNumber(qal::WideText key, std::uint32_t value) {
  return Guarded([&] { return Stored(file_.SetNumber(kNumbers, Narrow(key), value)); });
}

qal::Status SettingsStore::SetText(qal::WideText key, qal::WideText value) {
  return Guarded([&] { return Stored(file_.SetText(kTexts, Narrow(key), Narrow(value))); });
}

qal::Status SettingsStore::ReadInt(qal::WideText section, qal::WideText key, std::int32_t* value) {
  if (!value) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    if (const auto found = file_.Number(kSections, SectionKey(section, key))) {
      *value = static_cast<std::int32_t>(*found);
    }
    return qal::kOk;
  });
}

qal::Status SettingsStore::GetNumber(qal::WideText key, std::uint32_t* value) {
  if (!value) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const auto found = file_.Number(kNumbers, Narrow(key));
    if (!found) return qal::kFail;
    *value = static_cast<std::uint32_t>(*found);
    return qal::kOk;
  });
}

qal::Status SettingsStore::GetText(qal::WideText key, char16_t** value) {
  if (!value) return qal::kFail;
  *value = nullptr;
  return Guarded([&]() -> qal::Status {
    const auto found = file_.Text(kTexts, Narrow(key));
    if (!found) return qal::kFail;
    *value = platform::NewWide(*found);
    return *value ? qal::kOk : qal::kFail;
  });
}

std::vector<MessageOptions::Option> MessageOptions::Options() const { return options_; }

bool MessageOptions::Switch(const std::string& labelOrNumber, bool on) {
  for (std::size_t i = 0; i < options_.size(); ++i) {
    if (labelOrNumber != std::to_string(i + 1) && !platform::EqualNoCase(options_[i].label, labelOrNumber))
      continue;
    options_[i].on = on;
    file_.SetNumber(kOptions, options_[i].label, on ? 1 : 0);
    return true;
  }
  return false;
}

MessageOptions::Option* MessageOptions::Find(const qal::Guid& option) {
  const auto found = std::find_if(options_.begin(), options_.end(),
                                  [&](const Option& candidate) { return candidate.identifier == option; });
  return found == options_.end() ? nullptr : &*found;
}

qal::Status MessageOptions::RegisterOption(const qal::Guid* category, qal::WideText label,
                                           qal::Flag byDefault, qal::Guid* option) {
  if (!category || !option || options_.size() >= 1000) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    qal::Guid identifier = *category;
    identifier.data1 ^= nextOption_++;
    const std::string text = Narrow(label);
    const bool on = file_.Number(kOptions, text).value_or(byDefault) != 0;
    options_.push_back({identifier, text, on});
    *option = identifier;
    return qal::kOk;
  });
}

qal::Status MessageOptions::WithdrawOption(const qal::Guid* option) {
  if (!option) return qal::kFail;
  const auto* found = Find(*option);
  if (!found) return qal::kFail;
  options_.erase(options_.begin() + (found - options_.data()));
  return qal::kOk;
}

qal::Status MessageOptions::GetOptionState(qal::Guid option, qal::Flag* on) {
  const auto* found = Find(option);
  if (!on || !found) return qal::kFail;
  *on = found->on ? qal::kTrue : qal::kFalse;
  return qal::kOk;
}

qal::Status MessageOptions::AskOption(qal::Guid option, qal::WideText message, qal::Flag* answer) {
  const auto* found = Find(option);
  if (!answer || !found) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    *answer = qal::kTrue;
    if (!found->on) return qal::kOk;
    const auto given =
        platform::ShowMessageBox(Narrow(message), platform::Icon::kQuestion, platform::Buttons::kYesNo);
    if (given != platform::Answer::kYes) *answer = qal::kFalse;
    return qal::kOk;
  });
}

void MacroRecorder::Start() {
  lines_.clear();
  recording_ = true;
}

qal::Status MacroRecorder::RecordLine(qal::WideText line) {
  if (!recording_ || lines_.size() >= kMostLines) return qal::kFail;
  return Guarded([&] {
    lines_.push_back(Narrow(line));
    return qal::kOk;
  });
}

qal::Status ErrorText::GetErrorText(qal::Status status, char16_t** text) {
  if (!text) return qal::kFail;
  *text = nullptr;
  return Guarded([&]() -> qal::Status {
    std::string found = platform::Format("Error 0x%08X", static_cast<std::uint32_t>(status));
    for (const StatusText& entry : kStatusTexts) {
      if (entry.status == status) found = entry.text;
    }
    *text = platform::NewWide(found);
    return *text ? qal::kOk : qal::kFail;
  });
}

qal::Status Frame::GetColumnSetting(qal::Guid, qal::Guid, std::uint32_t column, std::uint32_t* state) {
  if (!state) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const auto found = file_.Number(kColumns, columnKey_(column));
    if (!found) return qal::kFail;
    *state = static_cast<std::uint32_t>(*found);
    return qal::kOk;
  });
}

qal::Status Frame::SetColumnSetting(qal::Guid, qal::Guid, std::uint32_t column, std::uint32_t state) {
  return Guarded([&]() -> qal::Status {
    const std::string key = columnKey_(column);
    return key.empty() ? qal::kFail : Stored(file_.SetNumber(kColumns, key, state));
  });
}

SessionData::SessionData() : values_(std::make_unique<nlohmann::json>(nlohmann::json::object())) {}

SessionData::~SessionData() = default;

nlohmann::json* SessionData::Opened() { return opened_.empty() ? nullptr : &(*values_)[opened_]; }

qal::Status SessionData::Open(const qal::Guid* session) {
  if (!session) return qal::kFail;
  return Guarded([&] {
    opened_ = GuidText(*session);
    if (!(*values_)[opened_].is_object()) (*values_)[opened_] = nlohmann::json::object();
    return qal::kOk;
  });
}

qal::Status SessionData::Close() {
  if (opened_.empty()) return qal::kFail;
  opened_.clear();
  return qal::kOk;
}

qal::Status SessionData::SetSessionText(qal::WideText key, qal::WideText value) {
  return Guarded([&]() -> qal::Status {
    auto* values = Opened();
    if (!values) return qal::kFail;
    (*values)[platform::ToUtf8(Narrow(key))] = platform::ToUtf8(Narrow(value));
    return qal::kOk;
  });
}

qal::Status SessionData::GetSessionText(qal::WideText key, qal::WideText fallback, char16_t** value) {
  if (!value) return qal::kFail;
  *value = nullptr;
  return Guarded([&]() -> qal::Status {
    auto* values = Opened();
    if (!values) return qal::kFail;
    *value = platform::NewWide(TextOf(*values, platform::ToUtf8(Narrow(key)), Narrow(fallback)));
    return *value ? qal::kOk : qal::kFail;
  });
}

qal::Status SessionData::SetSessionNumber(qal::WideText key, std::uint32_t value) {
  return Guarded([&]() -> qal::Status {
    auto* values = Opened();
    if (!values) return qal::kFail;
    (*values)[platform::ToUtf8(Narrow(key))] = value;
    return qal::kOk;
  });
}

qal::Status SessionData::GetSessionNumber(qal::WideText key, std::uint32_t fallback, std::uint32_t* value) {
  if (!value) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    auto* values = Opened();
    if (!values) return qal::kFail;
    *value = static_cast<std::uint32_t>(NumberOf(*values, platform::ToUtf8(Narrow(key)), fallback));
    return qal::kOk;
  });
}

}  // namespace workbench
