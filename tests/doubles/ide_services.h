#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "doubles/double.h"
#include "qal/ide_services.h"

/// Settings, questions, macros, error texts and the frame.
namespace doubles {

/// Keeps what is written; keys of a section are "section/key".
class StubSettings : public Double<qal::IQSettings> {
 public:
  static constexpr qal::Guid kService = qal::iid::kSettings;
  using Double::Double;
  std::map<std::string, std::int32_t> ints;
  std::map<std::string, std::uint32_t> numbers;
  std::map<std::string, std::string> texts;

  qal::Status WriteInt(qal::WideText section, qal::WideText key, std::int32_t value) override {
    ints[platform::Narrow(section) + '/' + platform::Narrow(key)] = value;
    return Log("settings.WriteInt", section, key, value);
  }
  qal::Status SetNumber(qal::WideText key, std::uint32_t value) override {
    numbers[platform::Narrow(key)] = value;
    return Log("settings.SetNumber", key, value);
  }
  qal::Status SetText(qal::WideText key, qal::WideText value) override {
    texts[platform::Narrow(key)] = platform::Narrow(value);
    return Log("settings.SetText", key, value);
  }
  qal::Status ReadInt(qal::WideText section, qal::WideText key, std::int32_t* value) override {
    const auto found = ints.find(platform::Narrow(section) + '/' + platform::Narrow(key));
    return Give(Log("settings.ReadInt", section, key), value, found == ints.end() ? *value : found->second);
  }
  qal::Status GetNumber(qal::WideText key, std::uint32_t* value) override {
    const auto found = numbers.find(platform::Narrow(key));
    const auto status = Log("settings.GetNumber", key);
    return found == numbers.end() ? qal::kFail : Give(status, value, found->second);
  }
  qal::Status GetText(qal::WideText key, char16_t** value) override {
    const auto found = texts.find(platform::Narrow(key));
    const auto status = Log("settings.GetText", key);
    return found == texts.end() ? Give(qal::kFail, value, {}) : Give(status, value, found->second);
  }
};

/// Options are numbered 1, 2, … in the order of their registration; each is on and answered with yes, until a
/// test says otherwise.
class StubMessageOptions : public Double<qal::IQMessageOptions> {
 public:
  static constexpr qal::Guid kService = qal::iid::kMessageOptions;
  using Double::Double;

  std::vector<std::string> labels;
  std::map<std::uint32_t, bool> state;   ///< by number of the option
  std::map<std::uint32_t, bool> answer;  ///< by number of the option

  qal::Status RegisterOption(const qal::Guid* category, qal::WideText label, qal::Flag byDefault,
                             qal::Guid* option) override {
    labels.push_back(platform::Narrow(label));
    *option = {};
    option->data1 = static_cast<std::uint32_t>(labels.size());
    return Log("options.RegisterOption", category, label, byDefault);
  }
  qal::Status WithdrawOption(const qal::Guid* option) override {
    return Log("options.WithdrawOption", option->data1);
  }
  qal::Status GetOptionState(qal::Guid option, qal::Flag* on) override {
    return Give(Log("options.GetOptionState", option.data1), on, Lookup(state, option));
  }
  qal::Status AskOption(qal::Guid option, qal::WideText message, qal::Flag* out) override {
    return Give(Log("options.AskOption", option.data1, message), out, Lookup(answer, option));
  }

 private:
  static qal::Flag Lookup(const std::map<std::uint32_t, bool>& table, const qal::Guid& option) {
    const auto found = table.find(option.data1);
    return found == table.end() || found->second ? qal::kTrue : qal::kFalse;
  }
};

class StubMacroRecorder : public Double<qal::IQMacroRecorder> {
 public:
  static constexpr qal::Guid kService = qal::iid::kMacroRecorder;
  using Double::Double;
  bool recording = false;
  std::vector<std::string> lines;
  qal::Status IsRecording() override { return recording ? 0 : 1; }
  qal::Status RecordLine(qal::WideText line) override {
    lines.push_back(platform::Narrow(line));
    return Log("macro.RecordLine", line);
  }
};

/// Gives "error 0x80004005".
class StubErrorText : public Double<qal::IQErrorText> {
 public:
  static constexpr qal::Guid kService = qal::iid::kErrorText;
  using Double::Double;
  qal::Status GetErrorText(qal::Status status, char16_t** text) override {
    const auto code = static_cast<std::uint32_t>(status);
    return Give(Log("error.GetErrorText", Hex{code}), text, platform::Format("error 0x%08x", code));
  }
};

/// Keeps column states by the column's handle; an unknown column has no setting.
class StubFrame : public Double<qal::IQFrame> {
 public:
  static constexpr qal::Guid kService = qal::iid::kFrame;
  using Double::Double;
  std::map<std::uint32_t, std::uint32_t> states;
  qal::Status GetColumnSetting(qal::Guid first, qal::Guid second, std::uint32_t column,
                               std::uint32_t* state) override {
    const auto status = Log("frame.GetColumnSetting", first, second, column);
    const auto found = states.find(column);
    return found == states.end() ? qal::kFail : Give(status, state, found->second);
  }
  qal::Status SetColumnSetting(qal::Guid first, qal::Guid second, std::uint32_t column,
                               std::uint32_t state) override {
    states[column] = state;
    return Log("frame.SetColumnSetting", first, second, column, state);
  }
};

}  // namespace doubles
