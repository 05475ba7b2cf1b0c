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
struct StubSettings : Service<qal::IQSettings, qal::iid::kSettings, "settings"> {
  using Service::Service;
  std::map<std::string, std::int32_t> ints;
  std::map<std::string, Number> numbers;
  std::map<std::string, std::string> texts;

  Status WriteInt(WideText section, WideText key, std::int32_t value) override {
    ints[platform::Narrow(section) + '/' + platform::Narrow(key)] = value;
    return Log("WriteInt", section, key, value);
  }
  Status SetNumber(WideText key, Number value) override {
    numbers[platform::Narrow(key)] = value;
    return Log("SetNumber", key, value);
  }
  Status SetText(WideText key, WideText value) override {
    texts[platform::Narrow(key)] = platform::Narrow(value);
    return Log("SetText", key, value);
  }
  Status ReadInt(WideText section, WideText key, std::int32_t* value) override {
    const auto found = ints.find(platform::Narrow(section) + '/' + platform::Narrow(key));
    return Give(Log("ReadInt", section, key), value, found == ints.end() ? *value : found->second);
  }
  Status GetNumber(WideText key, Number* value) override {
    const auto found = numbers.find(platform::Narrow(key));
    const auto status = Log("GetNumber", key);
    return found == numbers.end() ? qal::kFail : Give(status, value, found->second);
  }
  Status GetText(WideText key, char16_t** value) override {
    const auto found = texts.find(platform::Narrow(key));
    const auto status = Log("GetText", key);
    return found == texts.end() ? Give(qal::kFail, value, {}) : Give(status, value, found->second);
  }
};

/// Options are numbered 1, 2, … in the order of their registration; each is on and answered with yes, until a
/// test says otherwise.
struct StubMessageOptions : Service<qal::IQMessageOptions, qal::iid::kMessageOptions, "options"> {
  using Service::Service;

  std::vector<std::string> labels;
  std::map<Number, bool> state;   ///< by number of the option
  std::map<Number, bool> answer;  ///< by number of the option

  Status RegisterOption(const Guid* category, WideText label, Flag byDefault, Guid* option) override {
    labels.push_back(platform::Narrow(label));
    *option = {};
    option->data1 = static_cast<Number>(labels.size());
    return Log("RegisterOption", category, label, byDefault);
  }
  Status WithdrawOption(const Guid* option) override { return Log("WithdrawOption", option->data1); }
  Status GetOptionState(Guid option, Flag* on) override {
    return Give(Log("GetOptionState", option.data1), on, Lookup(state, option));
  }
  Status AskOption(Guid option, WideText message, Flag* out) override {
    return Give(Log("AskOption", option.data1, message), out, Lookup(answer, option));
  }

 private:
  static Flag Lookup(const std::map<Number, bool>& table, const Guid& option) {
    const auto found = table.find(option.data1);
    return found == table.end() || found->second ? qal::kTrue : qal::kFalse;
  }
};

struct StubMacroRecorder : Service<qal::IQMacroRecorder, qal::iid::kMacroRecorder, "macro"> {
  using Service::Service;
  bool recording = false;
  std::vector<std::string> lines;
  Status IsRecording() override { return recording ? 0 : 1; }
  Status RecordLine(WideText line) override {
    lines.push_back(platform::Narrow(line));
    return Log("RecordLine", line);
  }
};

/// Gives "error 0x80004005".
struct StubErrorText : Service<qal::IQErrorText, qal::iid::kErrorText, "error"> {
  using Service::Service;
  Status GetErrorText(Status status, char16_t** text) override {
    const auto code = static_cast<Number>(status);
    return Give(Log("GetErrorText", Hex{code}), text, platform::Format("error 0x%08x", code));
  }
};

/// Keeps column states by the column's handle; an unknown column has no setting.
struct StubFrame : Service<qal::IQFrame, qal::iid::kFrame, "frame"> {
  using Service::Service;
  std::map<Number, Number> states;
  Status GetColumnSetting(Guid first, Guid second, Number column, Number* state) override {
    const auto status = Log("GetColumnSetting", first, second, column);
    const auto found = states.find(column);
    return found == states.end() ? qal::kFail : Give(status, state, found->second);
  }
  Status SetColumnSetting(Guid first, Guid second, Number column, Number state) override {
    states[column] = state;
    return Log("SetColumnSetting", first, second, column, state);
  }
};

}  // namespace doubles
