#pragma once

#include <concepts>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "abi.h"

namespace stranger {

inline std::string Shown(const std::string& text) { return text; }
inline std::string Shown(const char16_t* text) { return text ? Read(text) : "all"; }
inline std::string Shown(const char16_t* const* text) { return Shown(text ? *text : nullptr); }
inline std::string Shown(std::integral auto number) { return std::to_string(number); }

/// A tiny IDE that knows the component only by its exports and slots. It loads the built module, offers
/// services over a target of 256 bytes of code at 0x1000, and writes down what the component asks. One at a
/// time.
///
/// Its program: 2-byte instructions from 0x1000 to 0x10ff but one of 4 bytes at 0x1008; functions "first"
/// (0x1000 to 0x101f) and "second" (0x1020 to 0x103f) of "\src\main.c".
class TinyIde {
 public:
  TinyIde();
  ~TinyIde();
  TinyIde(const TinyIde&) = delete;
  TinyIde& operator=(const TinyIde&) = delete;

  /// The one that lives.
  static TinyIde& Current();

  // The module's exports.
  void* Export(const char* name) const;
  template <class... Arguments>
  Result Enter(const char* name, Arguments... arguments) const {
    return reinterpret_cast<Result (*)(Arguments...)>(Export(name))(arguments...);
  }
  /// The interface, or null; `result` receives the status.
  void* QueryInterface2(void* key, const char* id, Result* result = nullptr) const;

  /// Creates the object under `key` and initialises it; gives its component interface.
  void* Start(void* key);
  /// Ends and destroys what Start made.
  void Stop(void* key);

  /// Services by name: "path", "source", … All are offered until taken away.
  void TakeAway(const std::string& name);
  void OfferNothing() { offered_.clear(); }

  /// What is registered under the identifier: the n-th, or null.
  void* Registered(const char* id, int index = 0) const;
  std::size_t RegistrationCount() const { return registered_.size(); }

  /// The command client that answers to the name, found by asking each for its names.
  void* Command(const std::string& name) const;
  /// Runs one line; gives "ok: result" or "failed: result", then the lines that were written, each with its
  /// line feed.
  std::string Run(const std::string& line);

  /// One line a call that the component made; forgets them.
  std::string TakeLog(const std::string& prefix = {});
  /// Writes a call down with its arguments, and gives success.
  template <class... Parts>
  Result Note(std::string line, const Parts&... parts) {
    ((line += " " + Shown(parts)), ...);
    const std::lock_guard lock(mutex_);
    log_.push_back(line);
    return kOk;
  }

  void* host() { return &host_; }

  // What the services answer with; read by their operations.
  bool active = true;
  Result addRangeAnswer = kOk;
  std::uint32_t lowest = 0;
  std::uint32_t highest = 0xFFFFFFFF;
  std::vector<std::uint32_t> path;  ///< branch, target, branch, target, …
  std::map<std::string, std::uint32_t> columns;
  std::map<std::uint32_t, std::uint32_t> columnStates;
  std::map<std::string, std::string> sessionTexts;
  std::map<std::string, std::uint32_t> sessionNumbers;

 private:
  void BuildHost();
  void BuildCoverage();
  void BuildProgram();
  void BuildProject();
  void BuildColumns();
  void BuildRest();
  Object& Offer(const char* name, const char* id);

  void* module_ = nullptr;
  Object host_;
  Object output_;
  std::deque<Object> objects_;
  void** columnTables_[3] = {};
  std::map<std::string, std::pair<Id, void*>> offered_;
  std::vector<std::pair<Id, void*>> registered_;
  std::vector<std::string> log_;
  std::uint32_t lastKey_ = 0;
  std::uint32_t optionCount_ = 0;

  mutable std::mutex mutex_;  // the display command writes from a thread of its own
  std::condition_variable ended_;
  std::string written_;
  bool outputEnded_ = false;
};

}  // namespace stranger
