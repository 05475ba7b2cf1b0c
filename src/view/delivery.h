#pragma once

#include <vector>

#include "platform/modal.h"
#include "util/entry.h"

namespace coverage {

class CoverageModel;
class LineMarks;
class WindowTable;

/// Brings everything that shows coverage up to date, once, when the call or message that changed the figures
/// is over: the coverage switch, the marks of the editors, the lists, the rows, then the redrawing. An entry
/// inside another one leaves it to the outer one, unless a dialog, box or question is open between them; what
/// is pending when one opens is delivered before. UI thread only.
class Delivery final : public EntryListener, public platform::ModalListener {
 public:
  Delivery(CoverageModel& model, WindowTable& table, LineMarks& marks);
  ~Delivery() override = default;

  /// Nothing is shown any more.
  void Stop() { stopped_ = true; }

  void OnEntryBegins() override { ++depth_; }
  void OnEntryEnds() override;
  void OnModalBegins() override;
  void OnModalEnds() override;

 private:
  bool Pending() const;
  void Deliver();
  void DeliverOnce();

  CoverageModel& model_;
  WindowTable& table_;
  LineMarks& marks_;
  int depth_ = 0;
  std::vector<int> outside_;  ///< depths of the entries that wait for a person
  bool delivering_ = false;
  bool stopped_ = false;
};

}  // namespace coverage
