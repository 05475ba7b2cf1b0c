#pragma once

namespace coverage {

/// Sets a flag for a scope. UI thread only.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~Raised() { flag_ = before_; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace coverage
