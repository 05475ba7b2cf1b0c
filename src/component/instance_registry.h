#pragma once

#include <cstddef>
#include <unordered_map>

namespace coverage {

class CJepCoverageDataCtrl;

/// The component objects of the loaded library, by the key that the IDE chose. Keys are compared by identity
/// and never looked into. The registry owns no object: only DestroyInstance ends one. UI thread only.
class InstanceRegistry {
 public:
  /// A key that is already there designates the new object from now on. Null is allowed.
  void Enter(void* key, CJepCoverageDataCtrl* object) { objects_[key] = object; }

  /// The object, or null.
  CJepCoverageDataCtrl* Find(void* key) const {
    const auto entry = objects_.find(key);
    return entry == objects_.end() ? nullptr : entry->second;
  }

  /// Removes the key and gives what stood under it, or null.
  CJepCoverageDataCtrl* Take(void* key) {
    const auto entry = objects_.find(key);
    if (entry == objects_.end()) return nullptr;
    CJepCoverageDataCtrl* const object = entry->second;
    objects_.erase(entry);
    return object;
  }

 private:
  std::unordered_map<void*, CJepCoverageDataCtrl*> objects_;
};

}  // namespace coverage
