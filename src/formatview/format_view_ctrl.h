#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formatview/command_sink.h"
#include "platform/font.h"
#include "qal/view_client.h"

namespace coverage {

/// Categories of colours that the IDE's format settings know.
inline constexpr char kTextCategory[] = "Text";
inline constexpr char kSelectedTextCategory[] = "Selected Text";

/// What the IDE's format settings are applied to.
class DisplayClient {
 public:
  /// `size` is in points.
  virtual void ApplyFont(std::string_view face, std::int32_t size) = 0;
  /// Positions in the named colour table.
  virtual void ApplyColours(std::string_view category, std::int32_t foreground, std::int32_t background) = 0;

 protected:
  ~DisplayClient() = default;
};

/// A command sink whose font and colours the IDE's common format settings ask for and set. Keeps one font and
/// two pairs of colours, positions in the named colour table; a new font goes to the window at once, colours
/// are only kept. UI thread only.
class CJepFormatViewCtrl : public CUiCommandSink, public qal::IQFormatViewClient2 {
 public:
  CJepFormatViewCtrl(qal::IQHost* host, CUiCustomizer* customizer);

  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }

  qal::Status GetFormatName(char16_t** name) override;
  qal::Status Reserved4() override { return qal::kOk; }
  qal::Status Reserved5(std::uintptr_t) override { return qal::kOk; }
  qal::Status GetCategories(qal::Variant* list) override;
  qal::Status GetCurrentColours(std::uint32_t* foreground, std::uint32_t* background) override;
  qal::Status GetFont(char16_t** face, std::uint32_t* size) override;
  qal::Status SetColours(qal::WideText category, std::uint32_t foreground, std::uint32_t background) override;
  using platform::Window::SetFont;
  qal::Status SetFont(qal::WideText face, std::uint32_t size) override;
  qal::Status ChangeFont(qal::WideText face, std::uint32_t size) override;
  qal::Status SetTextColours(std::uint32_t foreground, std::uint32_t background) override;
  qal::Status SetSelectedTextColours(std::uint32_t foreground, std::uint32_t background) override;
  qal::Status Reserved14() override { return qal::kOk; }
  qal::Status GetColours(qal::WideText category, std::uint32_t* foreground,
                         std::uint32_t* background) override;

 protected:
  std::optional<platform::Font> viewFont;
  std::int32_t textFore;
  std::int32_t textBack;
  std::int32_t selectedFore;
  std::int32_t selectedBack;
  std::string currentCategory;
  std::vector<std::string> categories;

 private:
  qal::Status WriteColours(std::string_view category, std::uint32_t* foreground,
                           std::uint32_t* background) const;
};

}  // namespace coverage
