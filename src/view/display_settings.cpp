#include "view/display_settings.h"

#include "platform/text.h"

namespace coverage {
namespace {

constexpr char kFontName[] = "JEP_COVERAGE_FONT_NAME";
constexpr char kFontSize[] = "JEP_COVERAGE_FONT_SIZE";
constexpr char kForeground[] = "JEP_COVERAGE_FGCOLOUR";
constexpr char kBackground[] = "JEP_COVERAGE_BKCOLOUR";

bool ReadNumber(qal::IQSettings* settings, const char* key, std::int32_t& value) {
  std::uint32_t read = 0;
  if (qal::Failed(settings->GetNumber(platform::Wide(key).get(), &read))) return false;
  value = static_cast<std::int32_t>(read);
  return true;
}

void WriteNumber(qal::IQSettings* settings, const char* key, std::int32_t value) {
  settings->SetNumber(platform::Wide(key).get(), static_cast<std::uint32_t>(value));
}

}  // namespace

void ReadDisplayFont(qal::IQSettings* settings, DisplayFont& font) {
  if (settings == nullptr) return;
  platform::WideOut face;
  if (qal::Failed(settings->GetText(platform::Wide(kFontName).get(), face.put())) || face.empty()) {
    return;
  }
  std::int32_t size = 0;
  if (!ReadNumber(settings, kFontSize, size)) return;
  font = {std::u16string(qal::TextView(face.get())), size};
}

void WriteDisplayFont(qal::IQSettings* settings, const DisplayFont& font) {
  if (settings == nullptr) return;
  char16_t* const face = qal::AllocText(font.face);
  settings->SetText(platform::Wide(kFontName).get(), face);
  qal::FreeText(face);
  WriteNumber(settings, kFontSize, font.size);
}

void ReadDisplayColours(qal::IQSettings* settings, std::int32_t& foreground, std::int32_t& background) {
  std::int32_t fore = 0;
  std::int32_t back = 0;
  if (settings == nullptr || !ReadNumber(settings, kForeground, fore) ||
      !ReadNumber(settings, kBackground, back)) {
    return;
  }
  foreground = fore;
  background = back;
}

void WriteDisplayColours(qal::IQSettings* settings, std::int32_t foreground, std::int32_t background) {
  if (settings == nullptr) return;
  WriteNumber(settings, kBackground, background);
  WriteNumber(settings, kForeground, foreground);
}

}  // namespace coverage
