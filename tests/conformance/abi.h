#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

// The binary form of the contract as a stranger writes it down: tables of operations called by number.
// Nothing here comes from the headers that the component is built with, and nothing from the system layer.
namespace stranger {

using Result = std::int32_t;
inline constexpr Result kOk = 0;
inline constexpr Result kNoInterface = static_cast<Result>(0x80004002u);
inline constexpr Result kFailure = static_cast<Result>(0x80004005u);

/// Sixteen bytes, made from the registry form.
struct Id {
  unsigned char bytes[16];
  bool operator==(const Id& other) const { return std::memcmp(bytes, other.bytes, sizeof(bytes)) == 0; }
};
inline Id MakeId(const char* text) {
  // Where each byte stands in the text: the first three fields are numbers, low byte first.
  static constexpr int kPlaces[] = {7, 5, 3, 1, 12, 10, 17, 15, 20, 22, 25, 27, 29, 31, 33, 35};
  Id id{};
  for (int i = 0; i < 16; ++i) {
    const char digits[] = {text[kPlaces[i]], text[kPlaces[i] + 1], 0};
    id.bytes[i] = static_cast<unsigned char>(std::strtoul(digits, nullptr, 16));
  }
  return id;
}

/// A text block: length in bytes, units, zero. Plain ASCII is enough here.
inline char16_t* NewText(const std::string& text) {
  const auto bytes = static_cast<std::uint32_t>(text.size() * 2);
  auto* block = static_cast<char*>(std::malloc(bytes + 6));
  std::memcpy(block, &bytes, 4);
  auto* units = reinterpret_cast<char16_t*>(block + 4);
  for (std::size_t i = 0; i < text.size(); ++i) units[i] = static_cast<unsigned char>(text[i]);
  units[text.size()] = 0;
  return units;
}
inline std::string Read(const char16_t* text) {
  if (!text) return {};
  std::uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - 4, 4);
  std::string narrow;
  for (std::uint32_t i = 0; i < bytes / 2; ++i) narrow += static_cast<char>(text[i] < 128 ? text[i] : '?');
  return narrow;
}
inline void FreeText(char16_t* text) {
  if (text) std::free(reinterpret_cast<char*>(text) - 4);
}

struct TextFree {
  void operator()(char16_t* text) const { FreeText(text); }
};
/// A text given in: lives as long as the object.
struct In : std::unique_ptr<char16_t, TextFree> {
  explicit In(const std::string& text) : unique_ptr(NewText(text)) {}
};

/// A text given out: read it, it is freed.
class Out {
 public:
  ~Out() { FreeText(text_); }
  Out() = default;
  Out(const Out&) = delete;
  Out& operator=(const Out&) = delete;
  char16_t** put() { return &text_; }
  bool given() const { return text_ != nullptr; }
  std::string str() const { return Read(text_); }

 private:
  char16_t* text_ = nullptr;
};

/// A tagged value of sixteen bytes; arrays are a pointer to a count and a block of such values.
struct Value {
  std::uint16_t tag = 0;
  std::uint16_t pad[3] = {};
  union {
    std::uint64_t bits = 0;
    void* pointer;
    std::uint32_t number;
    unsigned char byte;
  };
};
struct ValueArray {
  std::uint32_t count;
  Value* elements;
};
inline void FreeArray(ValueArray* array) {
  if (!array) return;
  for (std::uint32_t i = 0; i < array->count; ++i) {
    if (array->elements[i].tag == 8) FreeText(static_cast<char16_t*>(array->elements[i].pointer));
  }
  std::free(array->elements);
  std::free(array);
}

/// A value given out; an array in it is freed.
struct OutValue : Value {
  ~OutValue() { FreeArray(array()); }
  ValueArray* array() const { return (tag & 0x2000) != 0 ? static_cast<ValueArray*>(pointer) : nullptr; }
};

/// Calls the operation in a slot of an object's table.
template <class R = Result, class... Arguments>
R Call(void* object, int slot, Arguments... arguments) {
  static_assert((std::is_trivially_copyable_v<Arguments> && ...));
  void** table;
  std::memcpy(&table, object, sizeof(table));
  return reinterpret_cast<R (*)(void*, Arguments...)>(table[slot])(object, arguments...);
}

/// The interface of an object, or null where it has none.
inline void* Ask(void* object, const char* id) {
  const Id asked = MakeId(id);
  void* out = &out;
  const Result result = Call(object, 0, &asked, &out);
  if (result != (out ? kOk : kNoInterface))
    throw std::runtime_error("status and interface contradict each other");
  return out;
}

/// An object of the stranger's own: a table whose operations refuse until they are set.
class Object {
 public:
  Object() : table_(slots_) {
    for (auto& slot : slots_) slot = reinterpret_cast<void*>(+[](void*) -> Result { return kFailure; });
    Set(0, [](void*, const Id*, void** out) -> Result {
      *out = nullptr;
      return kNoInterface;
    });
    Set(1, [](void*) -> std::uint32_t { return 1; });
    Set(2, [](void*) -> std::uint32_t { return 0; });
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  /// The operation is a function, or a lambda that captures nothing.
  template <class Operation>
  void Set(int slot, Operation operation) {
    slots_[slot] = reinterpret_cast<void*>(+operation);
  }
  /// Where this object's table begins, for objects that are made of several.
  void** table() { return slots_; }

 private:
  void** table_;  // first, as the component reads it
  void* slots_[192];
};

}  // namespace stranger
