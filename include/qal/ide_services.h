#pragma once

#include "qal/reserve.h"

/// Settings, questions, macros, error texts and the frame of the IDE. User-interface thread only; texts given
/// out are new.
namespace qal {

struct SettingsTo3 : IQUnknown {
  virtual Status WriteInt(WideText section, WideText key, std::int32_t value) = 0;  // slot 3
};
struct SettingsTo7 : Reserve<SettingsTo3, 4, 4> {
  virtual Status SetNumber(WideText key, std::uint32_t value) = 0;  // slot 5
  virtual Status SetText(WideText key, WideText value) = 0;         // slot 6
  /// Leaves the value as it came in when the key is missing.
  virtual Status ReadInt(WideText section, WideText key, std::int32_t* value) = 0;  // slot 7
};
/// The IDE's settings store: numbers under a section and a key, and texts and numbers under a key alone.
struct IQSettings : Reserve<SettingsTo7, 8, 8> {
  virtual Status GetNumber(WideText key, std::uint32_t* value) = 0;  // slot 9
  virtual Status GetText(WideText key, char16_t** value) = 0;        // slot 10
};

/// Questions that the user can switch off.
struct IQMessageOptions : IQUnknown {
  /// `option` receives the new option's identifier; `byDefault` is -1.
  virtual Status RegisterOption(const Guid* category, WideText label, Flag byDefault,
                                Guid* option) = 0;           // slot 3
  virtual Status WithdrawOption(const Guid* option) = 0;     // slot 4
  virtual Status GetOptionState(Guid option, Flag* on) = 0;  // slot 5
  /// Shows a yes/no question under the option; `answer` is non-zero for yes.
  virtual Status AskOption(Guid option, WideText message, Flag* answer) = 0;  // slot 6
};

struct IQMacroRecorder : IQUnknown {
  /// 0 while a macro is being recorded, any other status otherwise.
  virtual Status IsRecording() = 0;  // slot 3
  /// Appends one command line to the macro.
  virtual Status RecordLine(WideText line) = 0;  // slot 4
};

struct IQErrorText : IQUnknown {
  virtual Status GetErrorText(Status status, char16_t** text) = 0;  // slot 3
};

/// The IDE's frame: what it remembers of editor columns. Both identifiers are id::kColumnSetting.
struct IQFrame : Reserve<IQUnknown, 3, 138> {
  /// 0 when there is a setting for the column.
  virtual Status GetColumnSetting(Guid first, Guid second, std::uint32_t column,
                                  std::uint32_t* state) = 0;  // slot 139
  virtual Status SetColumnSetting(Guid first, Guid second, std::uint32_t column,
                                  std::uint32_t state) = 0;  // slot 140
};

}  // namespace qal
