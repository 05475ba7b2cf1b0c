// Small ARM programs made in memory, for tests that need an exact or a damaged one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "workbench/program/program.h"

namespace workbench_test {

/// Flash at 0: a vector table (stack at 0x20001000, reset to 0x40), then `code` at 0x40. A symbol
/// "firmware_end" stands at the last halfword, which should be a branch to itself (0xe7fe).
struct ElfBuilder {
  struct NamedAddress {
    std::string name;
    std::uint32_t address;
    bool function = true;
  };
  std::vector<std::uint16_t> code;
  std::vector<NamedAddress> symbols;

  std::vector<std::uint8_t> Build() const;
};

/// A file in the temporary directory that goes away with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::vector<std::uint8_t>& bytes);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

std::vector<std::uint8_t> ReadFile(const std::string& path);
std::shared_ptr<const workbench::Program> LoadBytes(const std::vector<std::uint8_t>& bytes);
std::shared_ptr<const workbench::Program> LoadCode(const std::vector<std::uint16_t>& code);
/// The firmware under examples/.
std::string FirmwarePath();
std::shared_ptr<const workbench::Program> Firmware();

}  // namespace workbench_test
