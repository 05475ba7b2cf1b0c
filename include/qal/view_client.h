#pragma once

#include "qal/reserve.h"

/// What the view control offers the IDE beside its windows. User-interface thread only; texts given out are
/// new.
namespace qal {

/// Slots of the workspace client up to the session's opening; the ones without a use answer 0.
struct WorkSpaceClientTo7 : Reserve<IQUnknown, 3, 6, kOk> {
  virtual Status Notify7(std::uintptr_t a) = 0;  // slot 7
};
struct WorkSpaceClientTo14 : Reserve<WorkSpaceClientTo7, 8, 13, kOk> {
  /// `out` is not touched.
  virtual Status Notify14(std::uintptr_t a, std::uintptr_t out) = 0;  // slot 14
};
struct WorkSpaceClientTo25 : Reserve<WorkSpaceClientTo14, 15, 24, kOk> {
  virtual Status Notify25(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c,
                          std::uintptr_t d) = 0;  // slot 25
};
struct WorkSpaceClientTo30 : Reserve<WorkSpaceClientTo25, 26, 28, kOk> {
  virtual Status Notify29(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c) = 0;  // slot 29
  virtual Status Notify30(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c) = 0;  // slot 30
};
struct WorkSpaceClientTo44 : Reserve<WorkSpaceClientTo30, 31, 43, kOk> {
  /// The four texts go back to IQProject: slot 42 gets the first, second and fourth, slot 20 the first two.
  virtual Status OnSessionOpened(WideText first, WideText second, WideText third,
                                 WideText fourth) = 0;  // slot 44
};

/// The IDE's workspace and session as they change: what restores and saves coverage windows.
struct IQWorkSpaceClient2 : Reserve<WorkSpaceClientTo44, 45, 47, kOk> {
  virtual Status OnSessionSaving(WideText first, WideText second, WideText third) = 0;  // slot 48
  virtual Status GetSessionValue(std::uintptr_t a, std::uintptr_t b, std::uintptr_t c,
                                 std::uint32_t* value) = 0;  // slot 49
};

/// Font and colours of the view, as the IDE's common format settings show and set them. Colours are indexes 0
/// to 19 of the colour table; categories are "Text" and "Selected Text", compared exactly.
struct IQFormatViewClient2 : IQUnknown {
  virtual Status GetFormatName(char16_t** name) = 0;  // slot 3
  virtual Status Reserved4() = 0;                     // slot 4: answers 0
  virtual Status Reserved5(std::uintptr_t a) = 0;     // slot 5: answers 0
  /// A variant of texts (kVariantTextArray); the receiver clears it.
  virtual Status GetCategories(Variant* categories) = 0;                                       // slot 6
  virtual Status GetCurrentColours(std::uint32_t* foreground, std::uint32_t* background) = 0;  // slot 7
  /// 1 and nothing set when there is no font.
  virtual Status GetFont(char16_t** face, std::uint32_t* size) = 0;  // slot 8
  virtual Status SetColours(WideText category, std::uint32_t foreground,
                            std::uint32_t background) = 0;                                        // slot 9
  virtual Status SetFont(WideText face, std::uint32_t size) = 0;                                  // slot 10
  virtual Status ChangeFont(WideText face, std::uint32_t size) = 0;                               // slot 11
  virtual Status SetTextColours(std::uint32_t foreground, std::uint32_t background) = 0;          // slot 12
  virtual Status SetSelectedTextColours(std::uint32_t foreground, std::uint32_t background) = 0;  // slot 13
  virtual Status Reserved14() = 0;                                                                // slot 14
  /// Leaves both unchanged for another category.
  virtual Status GetColours(WideText category, std::uint32_t* foreground,
                            std::uint32_t* background) = 0;  // slot 15
};

/// The command-line coverage model for other components of the IDE: codes instead of messages, never a
/// question.
struct ICoverageAutomation : IQUnknown {
  virtual Status SetRange(std::uint32_t start, std::uint32_t end) = 0;    // slot 3
  virtual Status GetRange(std::uint32_t* start, std::uint32_t* end) = 0;  // slot 4
  virtual Status Disable() = 0;                                           // slot 5
  virtual Status Enable() = 0;                                            // slot 6
  virtual Status Clear() = 0;                                             // slot 7
  virtual Status IsEnabled(Flag* enabled) = 0;                            // slot 8
  virtual Status Load(WideText path) = 0;                                 // slot 9
  virtual Status Save(WideText path) = 0;                                 // slot 10
};

}  // namespace qal
