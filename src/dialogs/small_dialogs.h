#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/coverage_dialog.h"
#include "util/recent_list.h"

namespace coverage {

/// "Go To Address": an address inside a data pane's range.
class GoToAddressDialog final : public CoverageDialog {
 public:
  /// `history` is the texts typed before; the accepted one is put in front.
  GoToAddressDialog(qal::IQHost* host, std::uint32_t start, std::uint32_t end, std::string addressText,
                    RecentList& history);

  /// The address chosen; none on Cancel, and without the debugger's expressions.
  std::optional<std::uint32_t> Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnLabel();

  std::uint32_t start_;
  std::uint32_t end_;
  std::string addressText_;
  RecentList& history_;
  std::optional<std::uint32_t> address_;
};

/// "Confirmation Request": coverage data will be cleared.
class ConfirmationDialog final : public CoverageDialog {
 public:
  enum class Choice : std::uint8_t { kCancel, kGoOn, kSaveFirst };

  explicit ConfirmationDialog(qal::IQHost* host);
  Choice Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;

 private:
  bool save_ = true;
};

/// "Save Coverage Data": whether a window is to be saved before its data go.
class SavePromptDialog final : public CoverageDialog {
 public:
  enum class Choice : std::uint8_t { kYes, kYesToAll, kNo, kNoToAll };

  SavePromptDialog(qal::IQHost* host, std::string question, bool offerAll);
  Choice Ask(platform::Window* owner);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnChoice(std::uint32_t buttonId);

  std::string question_;
  bool offerAll_;
  Choice choice_ = Choice::kNoToAll;
};

}  // namespace coverage
