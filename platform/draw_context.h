#pragma once

#include <string>
#include <string_view>

#include "platform/api.h"
#include "platform/colours.h"
#include "platform/font.h"
#include "platform/geometry.h"

/// What an owner-drawn control draws with. User-interface thread.
namespace platform {

class PLATFORM_API DrawContext {
 public:
  virtual ~DrawContext() = default;

  void SetTextColour(Colour colour) { textColour_ = colour; }
  void SetBackColour(Colour colour) { backColour_ = colour; }
  Colour TextColour() const { return textColour_; }
  Colour BackColour() const { return backColour_; }
  void SetFont(const Font& font) { font_ = font; }
  const Font& CurrentFont() const { return font_; }

  virtual void FillRect(const Rect& rect, Colour colour) = 0;
  /// One line in the current font and text colour, from the left edge, vertically centred, cut at the
  /// rectangle.
  virtual void DrawText(std::string_view text, const Rect& rect) = 0;
  virtual void DrawFocusRect(const Rect& rect) = 0;

 private:
  Colour textColour_ = ColourOf(SystemColour::kWindowText);
  Colour backColour_ = ColourOf(SystemColour::kWindow);
  Font font_;
};

/// Writes down what is drawn, a line for each call: "fill 0,16,80,32 ffffff", "text 0,16,80,32 000000
/// \"T/F\"", "focus 0,16,80,32"; colours as red, green and blue in hexadecimal.
class PLATFORM_API RecordingDrawContext final : public DrawContext {
 public:
  void FillRect(const Rect& rect, Colour colour) override;
  void DrawText(std::string_view text, const Rect& rect) override;
  void DrawFocusRect(const Rect& rect) override;

  const std::string& Log() const { return log_; }
  void Clear() { log_.clear(); }

 private:
  std::string log_;
};

}  // namespace platform
