#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "formatview/format_view_ctrl.h"
#include "model/coverage_window.h"
#include "panes/instance_ctrl.h"
#include "platform/font.h"

namespace coverage {

class CJepCoverageInstanceCtrlCovData;

/// The list of a coverage window's instances, and the window's identity: borrows its record and knows the
/// data pane of each instance. UI thread only.
class CJepCoverageInstanceCtrlStatData final : public CJepDebugInstanceDataCtrl, public DisplayClient {
 public:
  using DataPane = CJepCoverageInstanceCtrlCovData;

  CJepCoverageInstanceCtrlStatData(const PaneServices& services, std::shared_ptr<CoverageWindow> record);
  ~CJepCoverageInstanceCtrlStatData() override;

  CoverageWindow& Record() const { return *record_; }
  /// Takes in the data pane of one of the record's instances, and lets one go.
  void AddPane(DataPane& pane);
  void Forget(DataPane& pane);
  /// Every data pane, in no particular order.
  std::vector<DataPane*> Panes() const;
  /// Pane of an instance or of an instance's number, or null.
  DataPane* PaneOf(const CoverageInstance* instance) const;
  DataPane* Pane(std::uint32_t number) const;
  /// Pane of the displayed instance, and the pane with the window; null when there is none.
  DataPane* DisplayedPane() const;
  DataPane* ViewPane() const;

  /// Number of a function for a macro: its place among the file's names; of equal names the one at its place
  /// in the order of start addresses. A name that is not there: the row's number.
  std::uint32_t MacroNumber(const CoverageInstance& instance, int row) const;

  // Each brings what the record's marks name up to date and takes the mark off.
  void ListStale();
  void RowsStale();
  void Redraw();

  void ListInstances(bool takeSnapshot, int firstRow, int rowCount);
  void ResetList();
  void RefreshFromDebugger() override;
  void SelectRow();
  void UpdateAllEnabled();
  void SizeColumns() { FitColumns(); }

  // DisplayClient
  void ApplyFont(std::string_view face, std::int32_t size) override;
  void ApplyColours(std::string_view category, std::int32_t foreground, std::int32_t background) override;

 protected:
  platform::LResult OnEntered(const platform::Message& message) override;
  std::span<const PaneColumn> Columns() const override;
  void OnPaneCreated() override;
  void OnResized() override;
  void OnPaneDestroyed() override;

 private:
  void WriteRow(int row, const FunctionStat& stat);
  std::string RangeText(const FunctionStat& stat) const;
  bool IsFileWindow() const { return record_->isFile(); }
  /// Instance of the selected row, or null.
  CoverageModel::InstancePtr Selected() const;
  /// The pane with the window takes over another instance than this one, which is about to go.
  void KeepView(CoverageInstance& leaving);
  void AfterEnabling();
  void Sort(int column);

  void OnEnableAll();
  void OnUpdateEnableAll(platform::CommandUpdate& update);
  void OnClearAll();
  void OnEnable();
  void OnUpdateEnable(platform::CommandUpdate& update);
  void OnClearData();
  void OnUpdateNeedsSelection(platform::CommandUpdate& update);
  void OnViewSource();
  void OnEditRange();
  void OnUpdateEditRange(platform::CommandUpdate& update);
  void OnSave();
  void OnLoad();
  void OnRefresh();
  void OnDeleteRange();
  void OnUpdateDeleteRange(platform::CommandUpdate& update);
  void OnAddRange();
  platform::LResult OnScrolled(const platform::Message& message);
  platform::LResult OnListKey(const platform::Notification& news);
  void OnListClick();
  void OnListDoubleClick();
  void OnColumnClick(const platform::Notification& news);

  std::shared_ptr<CoverageWindow> record_;
  std::unordered_map<const CoverageInstance*, DataPane*> panes_;
  DataPane* view_ = nullptr;
  bool allEnabled_ = false;
};

}  // namespace coverage
