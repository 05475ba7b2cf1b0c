#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

/// Benchmarks that compare: every measurement is taken in every round, in shuffled order, and only ratios of
/// one run count, never times. Add a row with Measure for each side and one Require.
namespace bench {

class Suite {
 public:
  /// `rounds` is how often everything is measured, or up to three times that while a limit is not met; the
  /// best time of each counts.
  explicit Suite(std::string name, int rounds = 7) : name_(std::move(name)), rounds_(rounds) {}

  /// One thing to measure. `prepare` runs before each measurement, untimed; `body` does `units` of work, so
  /// that measurements of different sizes can be compared. `body` runs once a round.
  void Measure(const std::string& what, double units, std::function<void()> prepare,
               std::function<void()> body);
  void Measure(const std::string& what, double units, std::function<void()> body) {
    Measure(what, units, nullptr, std::move(body));
  }

  /// Time a unit of `what` over time a unit of `floor`: at most `limit`.
  void RequireAtMost(const std::string& row, const std::string& what, const std::string& floor, double limit);
  /// How many times as fast as `slow` a unit of `what` is: at least `limit`.
  void RequireFaster(const std::string& row, const std::string& what, const std::string& slow, double limit);
  /// A figure that is no time, asked once after the rounds: at most `limit`.
  void RequireFigure(const std::string& row, std::function<double()> figure, double limit);

  /// Measures, prints one line a requirement ("row  ratio  limit  ok|SHORT") and gives the exit status: 1
  /// when one falls short. With the argument "-v" the times are printed too.
  int Run(int argc, char** argv);

 private:
  struct Task {
    std::string what;
    double units;
    std::function<void()> prepare;
    std::function<void()> body;
    double best = std::numeric_limits<double>::infinity();  ///< seconds a unit
  };
  struct Requirement {
    std::string row;
    std::function<double()> ratio;
    double limit;
    bool atLeast;
    bool ofTimes;
    bool Holds(double value) const { return atLeast ? value >= limit : value <= limit; }
  };

  static void MeasureOnce(Task& task);
  bool AllTimesHold() const;
  double Best(const std::string& what) const;

  std::string name_;
  int rounds_;
  std::vector<Task> tasks_;
  std::vector<Requirement> requirements_;
};

/// Keeps the compiler from dropping what only a benchmark reads.
template <class Value>
void Keep(const Value& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

/// Bytes that the process has from its allocator now.
std::size_t AllocatedBytes();

}  // namespace bench
