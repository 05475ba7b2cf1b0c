#include "workbench/services/debug_session.h"

#include <algorithm>

namespace workbench {
namespace {

template <class Pair>
void Append(std::vector<Pair>& to, const std::vector<RecordPair>& from) {
  for (const RecordPair& pair : from) to.push_back({pair.first, pair.second});
}

}  // namespace

std::shared_ptr<const Debuggee> DebugSession::Current() const {
  const std::lock_guard lock(mutex_);
  return debuggee_;
}

const Debuggee& DebugSession::Need() const {
  if (!debuggee_) throw TargetError("no program is loaded");
  return *debuggee_;
}

void DebugSession::Load(const std::string& file, const std::string& projectDirectory) {
  ProgramOptions options;
  options.projectDirectory = projectDirectory;
  auto next = std::make_shared<Debuggee>();
  next->program = Program::Load(file, options);
  next->simulator = std::make_unique<Simulator>(next->program);
  next->disassembler = std::make_unique<Disassembler>(next->program);
  next->simulator->SetSliceCallback([this] { return OnSlice(); });
  {
    const std::lock_guard lock(mutex_);
    debuggee_ = std::move(next);
  }
  path_ = {};
  counts_ = {};
  ApplyRecording();
  if (listener_) listener_->OnSymbolsChanged();
}

void DebugSession::Download(const std::string& projectDirectory) {
  const std::string file = Need().program->File();
  Load(file, projectDirectory);
}

void DebugSession::ApplyRecording() {
  if (!debuggee_) return;
  RecordMode mode = RecordMode::kOff;
  if (collection_ && offer_ == CoverageOffer::kPath) mode = RecordMode::kPath;
  if (collection_ && offer_ == CoverageOffer::kCounts) mode = RecordMode::kCounts;
  if (debuggee_->simulator->Recording() != mode) debuggee_->simulator->SetRecording(mode);
}

void DebugSession::SetOffer(CoverageOffer offer) {
  offer_ = offer;
  path_ = {};
  counts_ = {};
  ApplyRecording();
}

void DebugSession::SetCollection(bool on) {
  collection_ = on;
  if (!running_) ApplyRecording();
}

void DebugSession::TakeReports() {
  Simulator& simulator = *debuggee_->simulator;
  switch (simulator.Recording()) {
    case RecordMode::kPath: {
      // A record begins where the one before it ended, so one taken after the other is one path.
      const PathReport report = simulator.TakePath();
      if (path_.pairs.empty()) path_.start = report.start;
      Append(path_.pairs, report.pairs);
      break;
    }
    case RecordMode::kCounts: {
      const CountsReport report = simulator.TakeCounts();
      Append(counts_.counts, report.counts);
      Append(counts_.passes, report.passes);
      break;
    }
    default:
      break;
  }
}

bool DebugSession::OnSlice() {
  if (debuggee_->simulator->Recording() == RecordMode::kPath) {
    TakeReports();
    if (path_.pairs.size() >= kPairsPerReport) {
      if (listener_) listener_->OnCoverageAvailable();
      path_ = {};
    }
  }
  return !interrupted_.exchange(false) && !(stopQuestion_ && stopQuestion_());
}

template <class Start>
StopReport DebugSession::Execute(Start start) {
  const auto held = debuggee_;
  Need();
  path_ = {};
  counts_ = {};
  interrupted_ = false;
  running_ = true;
  if (listener_) listener_->OnRunBegins();
  StopReport report;
  try {
    report = start(*held->simulator);
  } catch (...) {
    running_ = false;
    if (listener_) listener_->OnRunEnds();
    throw;
  }
  running_ = false;
  TakeReports();
  if (listener_) {
    if (held->simulator->Recording() != RecordMode::kOff) listener_->OnCoverageAvailable();
    listener_->OnRunEnds();
    listener_->OnRedraw();
  }
  ApplyRecording();
  return report;
}

StopReport DebugSession::Run(std::uint64_t count) {
  return Execute([count](Simulator& simulator) { return simulator.Run(count); });
}

StopReport DebugSession::RunTo(std::uint32_t address) {
  return Execute([address](Simulator& simulator) { return simulator.RunTo(address); });
}

void DebugSession::Reset() {
  Need().simulator->Reset();
  debuggee_->simulator->DropRecord();
  path_ = {};
  counts_ = {};
  if (listener_) listener_->OnTargetReset();
}

bool DebugSession::AddRange(std::uint32_t start, std::uint32_t last) {
  if (refused_ && start <= refused_->last && last >= refused_->start) return false;
  if (start > last || start < limits_.start || last > limits_.last) return false;
  ranges_.push_back({start, last});
  return true;
}

bool DebugSession::RemoveRange(std::uint32_t start, std::uint32_t last) {
  const auto found = std::find(ranges_.begin(), ranges_.end(), AddressRange{start, last});
  if (found == ranges_.end()) return false;
  ranges_.erase(found);
  return true;
}

}  // namespace workbench
