#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "macro/image_output.h"
#include "macro/image_text.h"
#include "model/coverage_window.h"
#include "model/disassembly_cache.h"

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

/// The open coverage windows, as images see them.
class ImageWindows {
 public:
  /// In the order of the window table; valid until a window opens or closes.
  virtual std::vector<const CoverageWindow*> OpenWindows() = 0;
  virtual DisassemblyCache& Instructions() = 0;

 protected:
  ~ImageWindows() = default;
};

/// What a comparison says. `runStatus` is 1 when an item failed and 2 when an image is malformed: the texts
/// are then not meant for anybody.
struct ImageVerdict {
  std::string resultName;
  std::string messages;
  std::uint32_t runStatus = 0;
};

/// Writes coverage images of the open windows, verifies an image against them and compares two images. UI
/// thread only.
class CoverageImages {
 public:
  /// Both are borrowed; `host` may be null.
  CoverageImages(qal::IQHost* host, ImageWindows& windows) : host_(host), windows_(windows) {}

  /// Tokens of everything that is open, none selected.
  std::vector<std::string> ListItems() const;
  /// Appends the items of the selected tokens that match an open window; without version and options.
  void WriteImage(const std::vector<std::string>& tokens, ImageOutput& image) const;
  /// The same as a text, without the items' data.
  std::string WriteSelection(const std::vector<std::string>& tokens) const;
  /// Checks an image against what the windows hold now, with the options that the image carries.
  ImageVerdict VerifyImage(std::string_view image) const;

 private:
  struct Found {
    const CoverageWindow* window = nullptr;
    CoverageInstance* instance = nullptr;  ///< of a range token
  };

  Found FindWindow(std::string_view token) const;
  void AppendInstance(CoverageInstance& instance, ImageOutput& image) const;
  /// Address of the first instruction that an image has of an instance, or kNoStart.
  std::uint64_t FirstAddress(CoverageInstance& instance) const;
  qal::Status VerifyItem(const ImageItem& item, std::uint32_t options, std::string& messages) const;
  qal::Status VerifyFunctions(const ImageItem& item, const CoverageWindow& window, std::uint32_t options,
                              std::string& messages) const;
  qal::Status VerifyInstance(std::string_view data, CoverageInstance& instance, std::uint32_t options,
                             std::string& messages) const;

  qal::IQHost* host_;
  ImageWindows& windows_;
};

/// Compares two images, with the options that the first carries.
ImageVerdict CompareImages(std::string_view first, std::string_view second);

}  // namespace coverage
