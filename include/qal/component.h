#pragma once

#include "qal/unknown.h"

/// What the component object implements. Every operation is called on the IDE's user-interface thread.
/// QueryInterface answers the same table on whichever of these interfaces it is called.
namespace qal {

struct IQColumnClient;
struct IQHost;

/// The component object's primary interface.
struct IQRegistryClient : IQUnknown {
  virtual Status Reserved3(void* argument) = 0;  // slot 3: answers 0
};

/// One coverage component as the IDE's debugger session sees it.
struct IQComponent2 : IQUnknown {
  /// `event` is one of qal::event; anything else is ignored. Always 0.
  virtual Status OnDebugEvent(const Guid* event) = 0;  // slot 3
  /// Binds to `host` and, when `first` is set, creates the views. kFail without a host or without resources.
  virtual Status Initialize(IQHost* host, Flag first) = 0;  // slot 4
  virtual Status Reserved5() = 0;                           // slot 5: answers 0
  virtual Status Reserved6() = 0;                           // slot 6: answers 0
  /// Ends what Initialize began, wholly when `final` is set. kFail when no host is bound.
  virtual Status Uninitialize(Flag final) = 0;  // slot 7
  /// Gives a new text.
  virtual Status GetName(char16_t** name) = 0;  // slot 8
  /// Gives two images: variants tagged kVariantByteArray, one byte variant a pixel byte. The receiver clears
  /// them.
  virtual Status GetBitmaps(Variant* image, Variant* mask) = 0;  // slot 9
};

/// Hands a status on to the IDE's error-text service.
struct IQErrorReporter : IQUnknown {
  /// Gives a new text.
  virtual Status GetErrorText(Status status, char16_t** text) = 0;  // slot 3
};

/// Told by the debugger when a longer activity begins and ends; views stay still in between.
struct IQDebugActivitySink : IQUnknown {
  virtual Status OnActivityBegin(std::uint32_t first,
                                 std::uint32_t second) = 0;  // slot 3: arguments not used
  virtual Status Reserved4() = 0;                            // slot 4: answers 0
  virtual Status OnActivityEnd() = 0;                        // slot 5
};

/// Name and picture of the component for the test client.
struct IQTestImageSource : IQUnknown {
  /// Gives a new text.
  virtual Status GetName(char16_t** name) = 0;  // slot 3
  /// Gives two images in the form of IQComponent2::GetBitmaps.
  virtual Status GetBitmaps(Variant* image, Variant* mask) = 0;  // slot 4
};

}  // namespace qal
