#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "qal/types.h"

namespace qal {
struct IQHost;
struct IQMemory;
struct IQTargetInformation;
}  // namespace qal

namespace coverage {

/// One disassembled instruction. The texts belong to whoever gave it.
struct Instruction {
  std::uint32_t size = 0;        ///< bytes, never 0
  std::string_view addressText;  ///< the disassembly line, which begins with the address in hexadecimal
  std::string_view codeText;     ///< code bytes and what the debugger adds to them
};

/// Number at the start of an address text, read as hexadecimal ("0x" allowed) up to the first other
/// character; 0 when there is none, 0xFFFFFFFF when it is larger.
std::uint32_t AddressOfText(std::string_view text);

struct InstructionAlignment {
  std::uint16_t alignment = 1;  ///< never 0
  std::uint16_t offset = 0;
  friend bool operator==(const InstructionAlignment&, const InstructionAlignment&) = default;
};

/// Where instructions come from.
class InstructionSource {
 public:
  /// False when there is none at `address`. The texts hold until the next call, or longer where the source
  /// says so.
  virtual bool InstructionAt(std::uint32_t address, Instruction& out) = 0;

 protected:
  ~InstructionSource() = default;
};

/// Reads instructions from the target: 32 bytes through the memory service, decoded by the target-information
/// service. Keeps nothing but the last texts; services are looked up once, so make one for each operation.
/// Each thread needs its own.
class InstructionReader final : public InstructionSource {
 public:
  explicit InstructionReader(qal::IQHost* host);

  /// Fails when a service is missing or fails, or the decoder gives size 0.
  bool InstructionAt(std::uint32_t address, Instruction& out) override;
  /// None when the target-information service is missing, fails, or gives an alignment of 0.
  std::optional<InstructionAlignment> Alignment() const;

 private:
  qal::IQMemory* memory_;
  qal::IQTargetInformation* target_;
  std::uint16_t accessWidth_ = 0;
  std::uint16_t offset_ = 0;
  bool answered_ = false;
  std::string addressText_;
  std::string codeText_;
};

}  // namespace coverage
