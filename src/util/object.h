#pragma once

namespace coverage {

/// What the view control keeps in its object list and deletes through it.
class CObject {
 public:
  virtual ~CObject() = default;
};

}  // namespace coverage
