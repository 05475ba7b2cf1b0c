#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "dialogs/coverage_dialog.h"
#include "macro/coverage_test_client.h"
#include "platform/list_view.h"

namespace coverage {

/// The remembered answer to the question about big ranges, a set of bits.
namespace big_range {
inline constexpr std::uint32_t kYes = 1;
inline constexpr std::uint32_t kNo = 2;
inline constexpr std::uint32_t kDoNotAsk = 4;
/// Ranges whose last address is further than this from the first are asked about.
inline constexpr std::uint32_t kLimit = 0x3000;
}  // namespace big_range

/// "Edit Test Coverage": moves items between those that are available and those to be tested. The moves
/// change the token list at once and stay whatever ends the dialog; the options are taken on OK. Both
/// references belong to whoever runs the dialog, and nobody else may change them while it is open.
class TestSelectionDialog final : public CoverageDialog {
 public:
  TestSelectionDialog(qal::IQHost* host, ImageSelection& selection, std::uint32_t& bigRangeAnswer);

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  platform::LResult OnMessage(const platform::Message& message) override;

 private:
  void OnAdd();
  void OnRemove();
  void EnableMoves();
  void Fill();
  void PrepareList(std::uint32_t listId);
  /// The token that is shown at the selection mark of a list, or null.
  std::string* MarkedIn(std::uint32_t listId);
  /// Whether the token may be tested, as far as its size goes.
  bool AcceptsSize(const std::string& token);

  ImageSelection& selection_;
  std::uint32_t& bigRangeAnswer_;
};

/// Runs the dialog for the test client.
class TestSelectionEditor final : public ImageSelectionEditor {
 public:
  explicit TestSelectionEditor(qal::IQHost* host) : host_(host) {}
  bool Edit(ImageSelection& selection, std::uint32_t& bigRangeAnswer) override;

 private:
  qal::IQHost* host_;
};

}  // namespace coverage
