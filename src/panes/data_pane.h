#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "model/coverage_instance.h"
#include "panes/instance_ctrl.h"
#include "panes/row_builder.h"

namespace coverage {

/// One range or function of a coverage window. One of a window's data panes has a window of its own, with the
/// list that shows the rows of whichever instance is displayed; commands that reach it are carried out by
/// that one. UI thread only.
class CJepCoverageInstanceCtrlCovData final : public CJepDebugInstanceDataCtrl {
 public:
  CJepCoverageInstanceCtrlCovData(qal::IQHost* host, CUiCustomizer* customizer, PaneHost& owner,
                                  std::uint32_t start, std::uint32_t end, std::string functionName,
                                  std::uint32_t shown);
  ~CJepCoverageInstanceCtrlCovData() override;

  CoverageInstance& Instance() { return *instance_; }
  const CoverageInstance& Instance() const { return *instance_; }
  /// Trades instances, for a pane that stays while its instance goes.
  void SwapInstance(CJepCoverageInstanceCtrlCovData& other) { instance_.swap(other.instance_); }
  /// The window that the pane belongs to; null until the statistics pane has taken it in.
  CJepCoverageInstanceCtrlStatData* Statistics() const { return statistics_; }
  void SetStatistics(CJepCoverageInstanceCtrlStatData* statistics) { statistics_ = statistics; }
  bool PaneWindowCreated() const { return paneWindowCreated_; }

  /// As RowBuilder::Build, into the window's list; nothing for an instance that is not displayed.
  std::uint32_t RebuildRows(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount);
  void ResetRows();
  /// Registers the instance's range with the debugger; `active` then follows enableStatus.
  void RegisterRange(bool clearRows);
  /// The same without touching `active`.
  void ReRegisterRange();
  void RefreshStatistics();
  /// Clears the counters when `resetModified`; the editor marks are dropped in any case.
  void ClearCounts(bool resetModified);
  /// Sets the window's title and sizes the columns to their headings.
  void Retitle();
  /// Takes the pane for another range or function.
  void Reuse(std::uint32_t start, std::uint32_t end, std::string functionName, std::uint32_t shown);

  // Commands, on this pane's instance. PrepareReset and FinishReset(false) of a clear are the caller's.
  void ClearData();
  void EditRange();
  bool CanEditRange() const { return ExecutionHalted(); }
  void Refresh();
  void SetEnabled(std::uint32_t enabled);
  void RemoveFromDebugger();

 protected:
  platform::LResult OnMessage(const platform::Message& message) override;
  std::span<const PaneColumn> Columns() const override;
  void OnPaneCreated() override;
  void OnResized() override;
  void OnPaneDestroyed() override;

 private:
  friend class CJepCoverageInstanceCtrlStatData;

  /// Pane with the window, and pane whose instance it shows; this one when it belongs to no window yet.
  CJepCoverageInstanceCtrlCovData& View();
  CJepCoverageInstanceCtrlCovData& Displayed();
  RowBuilder Rows();
  std::optional<std::uint32_t> SelectedAddress();
  bool SourceOf(std::uint32_t address, char16_t** file, std::uint32_t* line) const;
  void ShowTitle();
  void ClearRange();
  void ClearFunction();

  void OnViewSource();
  void OnUpdateViewSource(platform::CommandUpdate& update);
  void OnEnable();
  void OnUpdateEnable(platform::CommandUpdate& update);
  void OnClearData();
  void OnRefresh();
  void OnEditRange();
  void OnUpdateEditRange(platform::CommandUpdate& update);
  void OnGoToAddress();
  void OnSave();
  void OnLoad();
  void OnLockRefresh();
  void OnUpdateLockRefresh(platform::CommandUpdate& update);
  void OnForStatistics(std::uint32_t command);
  void OnUpdateForStatistics(platform::CommandUpdate& update);
  void OnAddRange();
  void OnScrolled();
  void OnListClick(const platform::Notification& news);
  void OnListDoubleClick(const platform::Notification& news);
  platform::LResult OnListKey(const platform::Notification& news);

  std::unique_ptr<CoverageInstance> instance_;
  CJepCoverageInstanceCtrlStatData* statistics_ = nullptr;
  std::uint32_t nextAddress_ = 0;
  int rowsPerPage_ = 0;
  bool sizedOnce_ = false;
  bool paneWindowCreated_ = false;
};

}  // namespace coverage
