#include "workbench/services/frame_toolbar.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/dialog.h"
#include "platform/resources.h"
#include "platform/text.h"

namespace workbench {
namespace {

constexpr char kShownSettings[] = "toolbars shown";
constexpr char kButtonSettings[] = "toolbar buttons";

/// "32813 32817" as numbers; what is no number is left out.
std::vector<std::uint32_t> NumbersOf(const std::string& text) {
  std::vector<std::uint32_t> numbers;
  for (const char* at = text.data(); at < text.data() + text.size();) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(at, text.data() + text.size(), number);
    if (error == std::errc()) numbers.push_back(number);
    at = end + 1;
  }
  return numbers;
}

bool Contains(const std::vector<std::uint32_t>& numbers, std::uint32_t number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// The template of a dialog with a check box for each button.
class CustomizeTemplate {
 protected:
  explicit CustomizeTemplate(const std::vector<platform::ToolbarButton>& buttons) {
    using platform::ControlKind;
    names_.reserve(buttons.size());
    std::int16_t y = kMargin;
    for (const platform::ToolbarButton& button : buttons) {
      if (button.id == 0) continue;
      names_.push_back(button.tip.empty() ? std::to_string(button.id) : button.tip);
      controls_.push_back({ControlKind::kCheckBox, BoxOf(names_.size()), names_.back().c_str(), kMargin, y,
                           kWidth - 2 * kMargin, kLine, 0});
      y = static_cast<std::int16_t>(y + kLine);
    }
    y = static_cast<std::int16_t>(y + kMargin);
    controls_.push_back(
        {ControlKind::kDefaultButton, platform::kIdOk, "&OK", kMargin, y, kButtonWidth, kLine, 0});
    controls_.push_back({ControlKind::kPushButton, platform::kIdCancel, "&Cancel",
                         kWidth - kMargin - kButtonWidth, y, kButtonWidth, kLine, 0});
    resource_ = {0,
                 "Customize Toolbar",
                 kWidth,
                 static_cast<std::int16_t>(y + kLine + kMargin),
                 controls_.data(),
                 static_cast<std::uint32_t>(controls_.size())};
  }

  /// Identifier of the n-th box, from 1.
  static std::uint32_t BoxOf(std::size_t number) { return 100 + static_cast<std::uint32_t>(number); }

  static constexpr std::int16_t kWidth = 150;
  static constexpr std::int16_t kLine = 12;
  static constexpr std::int16_t kMargin = 7;
  static constexpr std::int16_t kButtonWidth = 50;

  std::vector<std::string> names_;
  std::vector<platform::ControlTemplate> controls_;
  platform::DialogTemplate resource_{};
};

class CustomizeDialog final : private CustomizeTemplate, public platform::Dialog {
 public:
  explicit CustomizeDialog(const std::vector<platform::ToolbarButton>& buttons)
      : CustomizeTemplate(buttons), Dialog(resource_), buttons_(buttons) {}

  /// Commands whose boxes are checked, or nothing after Cancel.
  std::optional<std::vector<std::uint32_t>> Ask(platform::Window& owner) {
    if (DoModal(&owner) != static_cast<int>(platform::kIdOk)) return std::nullopt;
    return chosen_;
  }

 private:
  void OnInitDialog() override {
    std::size_t box = 0;
    for (const platform::ToolbarButton& button : buttons_) {
      if (button.id != 0) CheckItem(BoxOf(++box), button.visible);
    }
  }

  void OnOK() override {
    std::size_t box = 0;
    for (const platform::ToolbarButton& button : buttons_) {
      if (button.id != 0 && IsItemChecked(BoxOf(++box))) chosen_.push_back(button.id);
    }
    Dialog::OnOK();
  }

  const std::vector<platform::ToolbarButton>& buttons_;
  std::vector<std::uint32_t> chosen_;
};

}  // namespace

FrameToolbar::FrameToolbar(SettingsFile& settings, std::string kind, qal::ModuleHandle module,
                           std::uint32_t resource, const std::vector<std::uint32_t>& first)
    : settings_(settings), kind_(std::move(kind)) {
  const platform::ResourceScope scope(module);
  if (const auto offered = platform::Toolbar::Load(resource)) {
    buttons_ = *offered;
  } else {
    for (const std::uint32_t command : first) buttons_.Buttons().push_back({.id = command});
  }
  shown_ = settings_.Number(kShownSettings, kind_).value_or(1) != 0;
  const auto chosen = settings_.Text(kButtonSettings, kind_);
  Wear(chosen ? NumbersOf(*chosen) : first);
}

void FrameToolbar::SetShown(bool shown) {
  shown_ = shown;
  settings_.SetNumber(kShownSettings, kind_, shown ? 1 : 0);
}

void FrameToolbar::Wear(const std::vector<std::uint32_t>& commands) {
  platform::ToolbarButton* separator = nullptr;
  bool any = false;
  for (platform::ToolbarButton& button : buttons_.Buttons()) {
    button.visible = false;
    if (button.id == 0) {
      separator = any ? &button : nullptr;
    } else if (Contains(commands, button.id)) {
      button.visible = any = true;
      if (separator) separator->visible = true;
      separator = nullptr;
    }
  }
}

void FrameToolbar::Update(platform::Window& target) { buttons_.Update(target); }

bool FrameToolbar::Offers(std::uint32_t command) const {
  const auto& buttons = buttons_.Buttons();
  return shown_ && std::any_of(buttons.begin(), buttons.end(), [&](const platform::ToolbarButton& button) {
           return button.visible && button.id == command;
         });
}

void FrameToolbar::Customize(platform::Window& frame) {
  CustomizeDialog dialog(buttons_.Buttons());
  const platform::WindowRef there(frame);
  const auto chosen = dialog.Ask(frame);
  // The toolbar goes with its frame.
  if (!there || !chosen) return;
  Wear(*chosen);
  std::string text;
  for (const std::uint32_t command : *chosen) text += (text.empty() ? "" : " ") + std::to_string(command);
  settings_.SetText(kButtonSettings, kind_, text);
}

}  // namespace workbench
