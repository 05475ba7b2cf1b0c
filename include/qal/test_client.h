#pragma once

#include "qal/component.h"

/// The coverage test client, as the IDE's test framework drives it. User-interface thread only; texts given
/// out are new. Any of the three interfaces answers QueryInterface for all of them.
namespace qal {

struct IQCoverageTestClient : IQUnknown {
  virtual Status GetClientInfo(char16_t** name, Guid* client, IQTestImageSource** component,
                               std::uint32_t* number,
                               char16_t** version) = 0;  // slot 3
  virtual Status GetImage(char16_t** image) = 0;         // slot 4
  /// Leaves `unfinished` alone when the text is empty or malformed, else 0.
  virtual Status SetSelectionChecked(WideText text, Flag* unfinished) = 0;  // slot 5
  /// `runStatus` is 0 from the caller; 1 when an item failed, 2 and status 1 when the image is malformed.
  virtual Status Verify(WideText image, char16_t** resultName, char16_t** messages,
                        std::uint32_t* runStatus) = 0;  // slot 6
  virtual Status Compare(WideText first, WideText second, char16_t** resultName, char16_t** messages,
                         std::uint32_t* runStatus) = 0;  // slot 7
  /// Runs the selection dialog.
  virtual Status EditSelection() = 0;  // slot 8
  /// 1 and nothing set for kinds 64 and 128 and for an empty text; else a copy.
  virtual Status TranslateImage(WideText text, std::uint32_t kind, char16_t** copy) = 0;  // slot 9
  virtual Status SetSelection(WideText text) = 0;                                         // slot 10
  virtual Status GetSelection(char16_t** text) = 0;                                       // slot 11
  virtual Status GetCurrentImage(char16_t** image) = 0;                                   // slot 12
  virtual Status Reserved1(std::uintptr_t a, std::uintptr_t b) = 0;  // slot 13: answers 1
  virtual Status VerifyWithSelection(WideText image, WideText selection, char16_t** resultName,
                                     char16_t** messages,
                                     std::uint32_t* runStatus) = 0;  // slot 14
  virtual Status CompareWithSelection(WideText first, WideText ignored, WideText second, WideText alsoIgnored,
                                      char16_t** resultName, char16_t** messages,
                                      std::uint32_t* runStatus) = 0;  // slot 15
  virtual Status SetSelectionAlias(WideText text) = 0;                // slot 16
};

struct IQTestClientName : IQUnknown {
  virtual Status GetDisplayName(char16_t** name) = 0;                // slot 3
  virtual Status GetClientName(char16_t** name) = 0;                 // slot 4
  virtual Status Reserved2(std::uintptr_t a) = 0;                    // slot 5: answers 1
  virtual Status Reserved3(std::uintptr_t a, std::uintptr_t b) = 0;  // slot 6: answers 1
};

struct IQTestClientContext : IQUnknown {
  /// kFail without the project service.
  virtual Status GetContextText(char16_t** text) = 0;  // slot 3
  virtual Status Reserved4() = 0;                      // slot 4: answers 0
};

}  // namespace qal
