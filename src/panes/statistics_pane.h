#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "formatview/format_view_ctrl.h"
#include "model/coverage_window.h"
#include "panes/instance_ctrl.h"
#include "platform/font.h"

namespace coverage {

/// The list of a coverage window's instances, and the window's identity: holds its record and knows its data
/// panes by number, dense from 1. UI thread only.
class CJepCoverageInstanceCtrlStatData final : public CJepDebugInstanceDataCtrl, public DisplayClient {
 public:
  using PaneMap = std::map<std::uint32_t, CJepCoverageInstanceCtrlCovData*>;

  CJepCoverageInstanceCtrlStatData(qal::IQHost* host, CUiCustomizer* customizer, PaneHost& owner,
                                   WindowKind kind, std::uint32_t start, std::uint32_t end);
  ~CJepCoverageInstanceCtrlStatData() override;

  CoverageWindow& Record() { return record_; }
  const CoverageWindow& Record() const { return record_; }
  const PaneMap& Panes() const { return panes_; }
  /// Takes a data pane in as the next number, which it gives.
  std::uint32_t AddPane(CJepCoverageInstanceCtrlCovData& pane);
  /// Lets a data pane go; higher numbers move down.
  void RemovePane(CJepCoverageInstanceCtrlCovData& pane);
  void RemoveAllPanes();
  /// Pane of a number, or null.
  CJepCoverageInstanceCtrlCovData* Pane(std::uint32_t number) const;
  /// Pane of the displayed instance (the first one when none is), and the pane with the window; null without
  /// panes.
  CJepCoverageInstanceCtrlCovData* DisplayedPane() const;
  CJepCoverageInstanceCtrlCovData* ViewPane() const;
  /// Makes the pane's instance the displayed one.
  void Display(CJepCoverageInstanceCtrlCovData& pane);
  /// When the displayed instance has no registered range: the first one that has.
  void DisplayRegistered();

  /// Names of the file's functions in the order of the debugger.
  void SetFunctionNames(std::vector<std::string> names) { functionNames_ = std::move(names); }
  /// Number of a function for a macro: its place among the names, or the given row's.
  std::uint32_t MacroNumber(const std::string& functionName, int row) const;

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
  platform::LResult OnMessage(const platform::Message& message) override;
  std::span<const PaneColumn> Columns() const override;
  void OnPaneCreated() override;
  void OnResized() override;

 private:
  void WriteRow(int row, const FunctionStat& stat);
  std::string RangeText(const FunctionStat& stat) const;
  bool IsFileWindow() const { return record_.kind == WindowKind::kFile; }
  /// Pane of the selected row, or null.
  CJepCoverageInstanceCtrlCovData* SelectedPane() const;
  void Renumber(const std::vector<CJepCoverageInstanceCtrlCovData*>& order);
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

  CoverageWindow record_;
  PaneMap panes_;
  std::vector<std::string> functionNames_;
  bool allEnabled_ = false;
};

}  // namespace coverage
