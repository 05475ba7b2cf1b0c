#include "model/instruction_reader.h"

#include <algorithm>

#include "model/services.h"
#include "platform/text.h"
#include "qal/all.h"

namespace coverage {

namespace {

constexpr std::uint32_t kBytes = 32;  // what the decoder is given

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  c = static_cast<char>(c | 0x20);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

}  // namespace

std::uint32_t AddressOfText(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  if (text.size() > 2 && text[0] == '0' && (text[1] | 0x20) == 'x' && HexDigit(text[2]) >= 0) {
    text.remove_prefix(2);
  }
  std::uint64_t value = 0;
  for (const char c : text) {
    const int digit = HexDigit(c);
    if (digit < 0) break;
    value = value * 16 + static_cast<std::uint64_t>(digit);
    if (value > 0xFFFFFFFF) return 0xFFFFFFFF;
  }
  return static_cast<std::uint32_t>(value);
}

InstructionReader::InstructionReader(qal::IQHost* host)
    : memory_(FindService<qal::IQMemory>(host, qal::iid::kMemory)),
      target_(FindService<qal::IQTargetInformation>(host, qal::iid::kTargetInformation)) {
  answered_ = target_ != nullptr && qal::Succeeded(target_->GetAlignment(&accessWidth_, &offset_));
  if (!answered_) accessWidth_ = offset_ = 0;
}

std::optional<InstructionAlignment> InstructionReader::Alignment() const {
  if (!answered_ || accessWidth_ == 0) return std::nullopt;
  return InstructionAlignment{accessWidth_, offset_};
}

bool InstructionReader::InstructionAt(std::uint32_t address, Instruction& out) {
  if (memory_ == nullptr || target_ == nullptr) return false;
  // Near the top of the address space the rest of the 32 bytes does not exist and reads as zero.
  std::array<std::uint8_t, kBytes> bytes{};
  const std::uint32_t last = address + std::min(kBytes - 1, 0xFFFFFFFF - address);
  if (qal::Failed(memory_->ReadMemory(address, last, accessWidth_, bytes.data()))) return false;
  qal::InstructionRecord record{};
  const qal::Status status = target_->Disassemble(kBytes, bytes.data(), address, &record);
  // Texts of a failed call are the component's to free as well.
  const auto take = [](std::string& to, char16_t* text) {
    to = platform::Narrow(qal::WideText{text});
    qal::FreeText(text);
  };
  take(addressText_, record.addressText);
  take(codeText_, record.lastText);
  if (qal::Failed(status) || record.length == 0) return false;
  out = {record.length, addressText_, codeText_};
  return true;
}

}  // namespace coverage
