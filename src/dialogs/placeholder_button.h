#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "platform/combo_box.h"
#include "platform/controls.h"
#include "platform/edit.h"
#include "platform/menu.h"
#include "qal/host.h"

namespace coverage {

/// In a list of placeholder indexes: a separator.
inline constexpr int kPlaceholderSeparator = 37;
/// What the dialogs with a file name offer.
inline constexpr int kFilePlaceholders[] = {13, 10, 8, 6, 9, 11, 12};

/// A button that offers placeholders in a menu where the person points, and puts the chosen one into a field
/// in the place of what is selected there. Of a name that the field refuses in part the rest is put in, and
/// the caret stays before it. UI thread only.
class CUiPlaceholderButtonEB : public platform::Button {
 public:
  static constexpr std::uint32_t kFirstCommand = 33411;
  static constexpr std::uint32_t kLastCommand = 33510;

  /// `host` is borrowed and may be null: then there are no custom placeholders.
  CUiPlaceholderButtonEB(std::span<const int> indexes, qal::IQHost* host)
      : indexes_(indexes.begin(), indexes.end()), host_(host) {}

  /// The field, which must be a sibling that outlives the button.
  void SetTarget(platform::Edit* edit) { targetEdit_ = edit; }
  void SetTarget(platform::ComboBox* combo) { targetCombo_ = combo; }

  /// The menu as it would open now.
  const platform::Menu& BuildMenu();

 protected:
  void OnPressed() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void AppendCustomPlaceholders(std::uint32_t firstCommand);
  void Insert(const std::string& name);
  template <class Field>
  void InsertInto(Field& field, const std::string& name);

  std::vector<int> indexes_;
  qal::IQHost* host_;
  platform::Edit* targetEdit_ = nullptr;
  platform::ComboBox* targetCombo_ = nullptr;
  platform::Menu menu_;
  std::map<std::uint32_t, std::string> commands_;
};

}  // namespace coverage
