#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "macro/coverage_images.h"
#include "qal/all.h"

namespace coverage {

/// Lets the person choose what goes into an image.
class ImageSelectionEditor {
 public:
  /// True when the person confirmed. The token list and the answer about big ranges are changed whatever the
  /// answer is, the options only then. Whoever asked, and this object, may be gone when it returns.
  virtual bool Edit(ImageSelection& selection, std::uint32_t& bigRangeAnswer) = 0;

 protected:
  ~ImageSelectionEditor() = default;
};

/// What the IDE's test framework drives: keeps the selection and the options, writes images, verifies and
/// compares them. Registers itself with the host for as long as it lives. An out pointer that an operation
/// would write through and that is null gives 0x80004005; then nothing is done. UI thread only.
class CoverageTestClient final : public qal::IQCoverageTestClient,
                                 public qal::IQTestClientName,
                                 public qal::IQTestClientContext {
 public:
  /// All borrowed. `host` may be null; `windows` may be none and be given later.
  CoverageTestClient(qal::IQHost* host, qal::IQTestImageSource* component, ImageWindows* windows,
                     ImageSelectionEditor* editor);
  ~CoverageTestClient() { Withdraw(); }
  CoverageTestClient(const CoverageTestClient&) = delete;
  CoverageTestClient& operator=(const CoverageTestClient&) = delete;

  /// Takes the registration back; the host is not called from then on.
  void Withdraw();
  /// The windows of a new view control, or null when it goes away.
  void SetWindows(ImageWindows* windows) { windows_ = windows; }

  qal::Status QueryInterface(const qal::Guid* identifier, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }

  qal::Status GetClientInfo(char16_t** name, qal::Guid* client, qal::IQTestImageSource** component,
                            std::uint32_t* number, char16_t** version) override;
  qal::Status GetImage(char16_t** image) override;
  qal::Status SetSelectionChecked(qal::WideText text, qal::Flag* unfinished) override;
  qal::Status Verify(qal::WideText image, char16_t** resultName, char16_t** messages,
                     std::uint32_t* runStatus) override;
  qal::Status Compare(qal::WideText first, qal::WideText second, char16_t** resultName, char16_t** messages,
                      std::uint32_t* runStatus) override;
  /// The dialog works on a copy, so other operations go on as if it were not there. What it says wins when it
  /// ends: its list and its answer about big ranges replace what the client then has, on OK its options, too.
  /// Nothing comes of a dialog that the client does not outlive.
  qal::Status EditSelection() override;
  qal::Status TranslateImage(qal::WideText text, std::uint32_t kind, char16_t** copy) override;
  qal::Status SetSelection(qal::WideText text) override;
  qal::Status GetSelection(char16_t** text) override;
  qal::Status GetCurrentImage(char16_t** image) override;
  qal::Status Reserved1(std::uintptr_t a, std::uintptr_t b) override;
  qal::Status VerifyWithSelection(qal::WideText image, qal::WideText selection, char16_t** resultName,
                                  char16_t** messages, std::uint32_t* runStatus) override;
  qal::Status CompareWithSelection(qal::WideText first, qal::WideText ignored, qal::WideText second,
                                   qal::WideText alsoIgnored, char16_t** resultName, char16_t** messages,
                                   std::uint32_t* runStatus) override;
  qal::Status SetSelectionAlias(qal::WideText text) override;

  qal::Status GetDisplayName(char16_t** name) override;
  qal::Status GetClientName(char16_t** name) override;
  qal::Status Reserved2(std::uintptr_t a) override;
  qal::Status Reserved3(std::uintptr_t a, std::uintptr_t b) override;

  qal::Status GetContextText(char16_t** text) override;
  qal::Status Reserved4() override;

 private:
  qal::IQHost* host_;
  qal::IQTestImageSource* component_;
  ImageWindows* windows_;
  ImageSelectionEditor* editor_;
  ImageSelection selection_;
  std::uint32_t bigRangeAnswer_ = 0;
  std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);  ///< ends with the client
};

}  // namespace coverage
