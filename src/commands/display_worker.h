// The listing of "coverage_display", written on a thread of its own while the user interface goes on.
#pragma once

#include <atomic>
#include <list>
#include <memory>

#include "model/command_model.h"
#include "qal/command.h"
#include "qal/host.h"

namespace coverage {

/// The listings that run. Several may overlap, each with its own stop flag. UI thread only; the threads
/// themselves read the model through its reading operations and share nothing else.
class DisplayWorkers {
 public:
  DisplayWorkers();
  /// Stops and joins all.
  ~DisplayWorkers();
  DisplayWorkers(const DisplayWorkers&) = delete;
  DisplayWorkers& operator=(const DisplayWorkers&) = delete;

  /// Starts a listing to `output`, which may be none and lives until its EndOutput was called. `model` lives
  /// until the listing was joined.
  void Start(qal::IQHost* host, CommandModel& model, qal::IQCommandOutput* output);
  /// Tells every listing to end at its next instruction; does not wait.
  void StopAll();
  /// Waits until every listing ended.
  void JoinAll();

 private:
  class Listing;
  std::list<std::unique_ptr<Listing>> listings_;
};

}  // namespace coverage
