#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "model/coverage_model.h"
#include "panes/instance_ctrl.h"
#include "panes/row_builder.h"

namespace coverage {

class CJepCoverageInstanceCtrlStatData;

/// One range or function of a coverage window. One of a window's data panes has a window of its own, with the
/// list that shows the rows of whichever instance is displayed; commands that reach it are carried out by
/// that one. UI thread only.
class CJepCoverageInstanceCtrlCovData final : public CJepDebugInstanceDataCtrl {
 public:
  CJepCoverageInstanceCtrlCovData(const PaneServices& services, CoverageModel::InstancePtr instance);
  ~CJepCoverageInstanceCtrlCovData() override;

  CoverageInstance& Instance() { return *instance_; }
  const CoverageInstance& Instance() const { return *instance_; }
  const CoverageModel::InstancePtr& Shared() const { return instance_; }
  bool PaneWindowCreated() const { return paneWindowCreated_; }

  /// As RowBuilder::Build, into the window's list; nothing for an instance that is not displayed.
  std::uint32_t RebuildRows(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount);
  void ResetRows();
  /// Registers the instance's range with the debugger; `active` then follows enableStatus.
  void RegisterRange(bool clearRows);
  /// The same without touching `active`.
  void ReRegisterRange();
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

 protected:
  platform::LResult OnEntered(const platform::Message& message) override;
  std::span<const PaneColumn> Columns() const override;
  void OnPaneCreated() override;
  void OnResized() override;
  void OnPaneDestroyed() override;

 private:
  friend class CJepCoverageInstanceCtrlStatData;  // whose panes take over each other's instances

  /// Pane with the window; this one when it belongs to no coverage window yet.
  CJepCoverageInstanceCtrlCovData& View();
  /// Pane whose instance the window shows, or null; this one when it belongs to no coverage window yet.
  CJepCoverageInstanceCtrlCovData* Displayed();
  RowBuilder Rows();
  std::optional<std::uint32_t> SelectedAddress();
  bool SourceOf(std::uint32_t address, char16_t** file, std::uint32_t* line) const;
  std::uint32_t FirstOfLastPage();
  void EmptyRows();
  void ShowTitle();
  /// Nothing when no instance is displayed.
  template <class Act>
  void WithDisplayed(Act act);

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

  CoverageModel::InstancePtr instance_;
  CJepCoverageInstanceCtrlStatData* statistics_ = nullptr;
  std::uint32_t nextAddress_ = 0;
  int rowsPerPage_ = 0;
  int builtTop_ = 0;  ///< top row when rows were written last
  bool sizedOnce_ = false;
  bool paneWindowCreated_ = false;
};

}  // namespace coverage
