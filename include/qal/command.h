#pragma once

#include "qal/reserve.h"

/// The IDE's command line.
namespace qal {

/// Where a command writes its lines. May be called from a command's own thread.
struct IQCommandOutput : IQUnknown {
  /// `second` is the empty text.
  virtual Status WriteLine(WideText line, WideText second) = 0;  // slot 3
  /// The command writes no more; the text is empty.
  virtual Status EndOutput(WideText text) = 0;  // slot 4
};

/// One command. Called on the user-interface thread; the object belongs to the component.
struct IQCmdClient : IQUnknown {
  /// A new array of text variants: the full name, then the short one. The receiver frees it.
  virtual Status GetCommandNames(VariantArray** names) = 0;  // slot 3
  /// `arguments` is the whole line with the command's name in front. The result and the prompt are new texts,
  /// given on failure too. `wantsMore` asks for a further line behind `prompt`; `status` 0xFFFF says that
  /// output goes on after the return, until EndOutput. `output` must live that long.
  virtual Status ExecuteCommand(WideText arguments, char16_t** result, char16_t** prompt, Flag* wantsMore,
                                std::uint16_t* status, IQCommandOutput* output) = 0;  // slot 4
  /// Stops output that goes on.
  virtual Status CancelCommand() = 0;  // slot 5
};

struct IQCmdClient2 : IQCmdClient {
  /// The names as GetCommandNames gives them, and the command's number.
  virtual Status GetCommandNamesEx(VariantArray** names, std::int32_t* id) = 0;  // slot 6
};

/// Names that the IDE's command line knows.
struct IQCommandRegistry : Reserve<IQUnknown, 3, 10> {
  /// `shortForm` is 1 for the short form, 0 for the full name.
  virtual Status AddCommand(WideText name, WideText syntax, std::uint32_t shortForm) = 0;  // slot 11
  virtual Status RemoveCommand(WideText name, WideText syntax) = 0;                        // slot 12
};

}  // namespace qal
