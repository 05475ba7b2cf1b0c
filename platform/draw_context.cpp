#include "platform/draw_context.h"

#include "platform/text.h"

namespace platform {

namespace {

std::string Write(const Rect& rect) {
  return Format("%d,%d,%d,%d", rect.left, rect.top, rect.right, rect.bottom);
}

std::string Write(Colour colour) {
  return Format("%02x%02x%02x", colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

}  // namespace

void RecordingDrawContext::FillRect(const Rect& rect, Colour colour) {
  log_ += "fill " + Write(rect) + " " + Write(colour) + "\n";
}

void RecordingDrawContext::DrawText(std::string_view text, const Rect& rect) {
  log_ += "text " + Write(rect) + " " + Write(TextColour()) + " \"" + std::string(text) + "\"\n";
}

void RecordingDrawContext::DrawFocusRect(const Rect& rect) { log_ += "focus " + Write(rect) + "\n"; }

}  // namespace platform
