#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/menu.h"
#include "platform/window.h"
#include "qal/basic.h"
#include "workbench/services/settings.h"

namespace workbench {

/// The toolbar of a docking frame: the buttons that a component's toolbar resource offers, and those of them
/// that the frame wears. The person's choice is kept for all frames of the kind. User-interface thread.
class FrameToolbar {
 public:
  /// `offered` has every button of the resource (or, without one, a button for each of `first`); at first the
  /// frame wears those whose commands are in `first`, or what the person chose for this kind of frame.
  FrameToolbar(SettingsFile& settings, std::string kind, qal::ModuleHandle module, std::uint32_t resource,
               const std::vector<std::uint32_t>& first);

  bool Shown() const { return shown_; }
  void SetShown(bool shown);
  /// The toolbar as the frame wears it; buttons that are left out are not visible, nor are separators with
  /// nothing on either side.
  const platform::Toolbar& Buttons() const { return buttons_; }
  /// Takes over how the commands stand with a window.
  void Update(platform::Window& target);
  /// Whether the frame wears a button with this command and shows it.
  bool Offers(std::uint32_t command) const;

  /// Lets the person choose the buttons.
  void Customize(platform::Window& frame);

 private:
  void Wear(const std::vector<std::uint32_t>& commands);

  SettingsFile& settings_;
  std::string kind_;
  platform::Toolbar buttons_;
  bool shown_ = true;
};

}  // namespace workbench
