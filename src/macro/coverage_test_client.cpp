#include "macro/coverage_test_client.h"

#include <algorithm>
#include <initializer_list>

#include "model/services.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "util/entry.h"

namespace coverage {
namespace {

constexpr std::uint32_t kClientNumber = 17;
/// Kinds of image that TranslateImage does not know.
constexpr std::uint32_t kForeignKinds[] = {64, 128};
constexpr qal::Status kNothing = 1;

/// Writes a text that the caller takes over.
qal::Status GiveText(std::string_view text, char16_t** out) {
  if (!out) return qal::kFail;
  *out = platform::NewWide(text);
  return qal::kOk;
}

/// Where a verdict goes.
struct VerdictOut {
  char16_t** resultName;
  char16_t** messages;
  std::uint32_t* runStatus;

  /// Whether a verdict about the images can be written: of one about a malformed image the texts are not.
  bool Takes(std::initializer_list<std::string_view> images) const {
    return runStatus && ((resultName && messages) || std::any_of(images.begin(), images.end(), IsMalformed));
  }
  qal::Status Give(const ImageVerdict& verdict) const {
    if (verdict.runStatus != 0) *runStatus = verdict.runStatus;
    if (verdict.runStatus == 2) return kNothing;
    *resultName = platform::NewWide(verdict.resultName);
    *messages = platform::NewWide(verdict.messages);
    return qal::kOk;
  }
};

}  // namespace

CoverageTestClient::CoverageTestClient(qal::IQHost* host, qal::IQTestImageSource* component,
                                       ImageWindows* windows, ImageSelectionEditor* editor)
    : host_(host), component_(component), windows_(windows), editor_(editor) {
  if (host_) host_->Advise(&qal::iid::kCoverageTestClient, static_cast<qal::IQCoverageTestClient*>(this));
}

void CoverageTestClient::Withdraw() {
  if (host_) host_->Unadvise(&qal::iid::kCoverageTestClient, static_cast<qal::IQCoverageTestClient*>(this));
  host_ = nullptr;
}

qal::Status CoverageTestClient::QueryInterface(const qal::Guid* identifier, void** out) {
  if (!identifier || !out) return qal::kFail;
  *out = nullptr;
  if (*identifier == qal::iid::kUnknown || *identifier == qal::iid::kCoverageTestClient) {
    *out = static_cast<qal::IQCoverageTestClient*>(this);
  } else if (*identifier == qal::iid::kTestClientName) {
    *out = static_cast<qal::IQTestClientName*>(this);
  } else if (*identifier == qal::iid::kTestClientContext) {
    *out = static_cast<qal::IQTestClientContext*>(this);
  }
  return *out ? qal::kOk : qal::kNoInterface;
}

qal::Status CoverageTestClient::GetClientInfo(char16_t** name, qal::Guid* client,
                                              qal::IQTestImageSource** component, std::uint32_t* number,
                                              char16_t** version) {
  if (!name || !client || !component || !number || !version) return qal::kFail;
  return Enter(
      nullptr,
      [&] {
        *name = platform::NewWide("Coverage");
        *client = qal::id::kTestClient;
        *component = component_;
        *number = kClientNumber;
        *version = platform::NewWide(kImageVersion);
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CoverageTestClient::GetImage(char16_t** image) {
  if (!image) return qal::kFail;
  return Enter(
      nullptr,
      [&] {
        ImageOutput output;
        output.Append(ImageHead(selection_.options));
        if (windows_) CoverageImages(host_, *windows_).WriteImage(selection_.tokens, output);
        *image = output.Take();
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CoverageTestClient::SetSelectionChecked(qal::WideText text, qal::Flag* unfinished) {
  return Enter(
      nullptr,
      [&] {
        bool complete = false;
        ImageSelection selection = ParseImageSelection(platform::Narrow(text), &complete);
        if (complete && !unfinished) return qal::kFail;
        selection_ = std::move(selection);
        if (complete) *unfinished = qal::kFalse;
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CoverageTestClient::Verify(qal::WideText image, char16_t** resultName, char16_t** messages,
                                       std::uint32_t* runStatus) {
  return Enter(
      nullptr,
      [&] {
        const std::string text = platform::Narrow(image);
        const VerdictOut out{resultName, messages, runStatus};
        if (!out.Takes({text})) return qal::kFail;
        selection_ = ParseImageSelection(text);
        if (!windows_) return qal::kFail;
        return out.Give(CoverageImages(host_, *windows_).VerifyImage(text));
      },
      qal::kFail);
}

qal::Status CoverageTestClient::Compare(qal::WideText first, qal::WideText second, char16_t** resultName,
                                        char16_t** messages, std::uint32_t* runStatus) {
  return Enter(
      nullptr,
      [&] {
        const std::string left = platform::Narrow(first);
        const std::string right = platform::Narrow(second);
        const VerdictOut out{resultName, messages, runStatus};
        if (!out.Takes({left, right})) return qal::kFail;
        selection_ = ParseImageSelection(left);
        return out.Give(CompareImages(left, right));
      },
      qal::kFail);
}

qal::Status CoverageTestClient::EditSelection() {
  return Enter(
      nullptr,
      [&] {
        if (!windows_ || !editor_) return qal::kOk;
        std::vector<std::string> tokens = CoverageImages(host_, *windows_).ListItems();
        for (std::string& token : tokens) {
          for (const std::string& old : selection_.tokens) {
            if (old.size() < kTokenBody) continue;
            if (!platform::EqualNoCase(std::string_view(old).substr(kTokenBody),
                                       std::string_view(token).substr(kTokenBody))) {
              continue;
            }
            token = old;
            break;
          }
        }
        selection_.tokens = std::move(tokens);
        ImageSelection edited = selection_;
        std::uint32_t answer = bigRangeAnswer_;
        const std::weak_ptr<const bool> life = life_;
        const bool confirmed = editor_->Edit(edited, answer);
        if (life.expired()) return qal::kOk;
        selection_.tokens = std::move(edited.tokens);
        if (confirmed) selection_.options = edited.options;
        bigRangeAnswer_ = answer;
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CoverageTestClient::TranslateImage(qal::WideText text, std::uint32_t kind, char16_t** copy) {
  return Enter(
      nullptr,
      [&]() -> qal::Status {
        for (const std::uint32_t foreign : kForeignKinds) {
          if (kind == foreign) return kNothing;
        }
        const std::string narrow = platform::Narrow(text);
        if (narrow.empty()) return kNothing;
        return GiveText(narrow, copy);
      },
      qal::kFail);
}

qal::Status CoverageTestClient::SetSelection(qal::WideText text) {
  return Enter(
      nullptr,
      [&] {
        selection_ = ParseImageSelection(platform::Narrow(text));
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CoverageTestClient::GetSelection(char16_t** text) {
  if (!text) return qal::kFail;
  return Enter(
      nullptr,
      [&] {
        std::string selection = ImageHead(selection_.options);
        if (windows_) selection += CoverageImages(host_, *windows_).WriteSelection(selection_.tokens);
        return GiveText(selection, text);
      },
      qal::kFail);
}

qal::Status CoverageTestClient::GetCurrentImage(char16_t** image) {
  if (!image) return qal::kFail;
  GetImage(image);
  return qal::kOk;
}

qal::Status CoverageTestClient::Reserved1(std::uintptr_t, std::uintptr_t) { return kNothing; }

// The image that the next two hand on brings a selection of its own, which is the one that stays.

qal::Status CoverageTestClient::VerifyWithSelection(qal::WideText image, qal::WideText, char16_t** resultName,
                                                    char16_t** messages, std::uint32_t* runStatus) {
  return Verify(image, resultName, messages, runStatus);
}

qal::Status CoverageTestClient::CompareWithSelection(qal::WideText first, qal::WideText, qal::WideText second,
                                                     qal::WideText, char16_t** resultName,
                                                     char16_t** messages, std::uint32_t* runStatus) {
  return Compare(first, second, resultName, messages, runStatus);
}

qal::Status CoverageTestClient::SetSelectionAlias(qal::WideText text) { return SetSelection(text); }

qal::Status CoverageTestClient::GetDisplayName(char16_t** name) {
  return Enter(
      nullptr, [&] { return GiveText("Coverage test client", name); }, qal::kFail);
}

qal::Status CoverageTestClient::GetClientName(char16_t** name) {
  return Enter(
      nullptr, [&] { return GiveText("TectClientCoverage", name); }, qal::kFail);
}

qal::Status CoverageTestClient::Reserved2(std::uintptr_t) { return kNothing; }
qal::Status CoverageTestClient::Reserved3(std::uintptr_t, std::uintptr_t) { return kNothing; }

qal::Status CoverageTestClient::GetContextText(char16_t** text) {
  if (!text) return qal::kFail;
  auto* project = FindService<qal::IQProject>(host_, qal::iid::kProject);
  if (!project) return qal::kFail;
  project->GetContextText(text);
  return qal::kOk;
}

qal::Status CoverageTestClient::Reserved4() { return qal::kOk; }

}  // namespace coverage
