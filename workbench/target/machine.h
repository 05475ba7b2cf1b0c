// The simulator behind the target: its memory, registers and events.
//
// One thread runs it; reading and writing memory is safe from any thread and waits for the slice under way.
#pragma once

#include <unicorn/unicorn.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "workbench/target/execution_recorder.h"
#include "workbench/target/simulator.h"

namespace workbench {

class Machine {
 public:
  /// What ended a slice besides a stop that the recorder asked for.
  struct SliceEnd {
    std::uint32_t pc = 0;
    std::string fault;  ///< empty when the target can go on
  };

  /// Throws TargetError when the program's memory cannot be laid out.
  explicit Machine(const Program& program);
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  const std::vector<MemoryRegion>& Regions() const { return regions_; }
  /// Each slice without code events begins with a copy of this much memory.
  std::uint64_t WritableBytes() const { return writableBytes_; }
  void Attach(ExecutionRecorder* recorder) { recorder_ = recorder; }

  /// Memory as after a download, registers as after a reset.
  void Reset(const Program& program);

  /// Runs from the program counter until the recorder or a breakpoint stops it. With `exact` every
  /// instruction raises a code event.
  SliceEnd RunSlice(bool exact);
  /// Addresses before which a slice stops.
  void SetBreakpoints(std::vector<std::uint32_t> addresses);

  std::uint32_t Pc() const { return ReadRegister(15); }
  std::uint32_t ReadRegister(unsigned index) const;
  bool Read(std::uint32_t address, void* buffer, std::uint32_t size) const;
  bool Write(std::uint32_t address, const void* bytes, std::uint32_t size);
  std::uint16_t Halfword(std::uint32_t address) const;

 private:
  struct Area {
    std::uint32_t start = 0;
    std::uint32_t size = 0;  // a multiple of the page size
    bool writable = false;
    std::unique_ptr<std::uint8_t[]> bytes;
    std::unique_ptr<std::uint8_t[]> before;  // the bytes of a writable area when the slice began
  };
  struct Breakpoint {
    std::uint32_t address;
    uc_hook hook;
  };

  static void OnBlock(uc_engine* engine, std::uint64_t address, std::uint32_t size, void* self);
  static void OnCode(uc_engine* engine, std::uint64_t address, std::uint32_t size, void* self);
  static void OnBreakpoint(uc_engine* engine, std::uint64_t address, std::uint32_t size, void* self);
  static bool OnBadAccess(uc_engine* engine, uc_mem_type type, std::uint64_t address, int size,
                          std::int64_t value, void* self);
  static void OnException(uc_engine* engine, std::uint32_t number, void* self);

  void LayOut(const Program& program);
  void Open();
  uc_hook AddHook(int type, void* callback, std::uint64_t first, std::uint64_t last);
  void SetExact(bool exact);
  void DropTranslations(std::uint32_t start, std::uint64_t size);
  void KeepState();
  std::uint32_t ReplayToFault();
  std::string FaultText(uc_err error, std::uint32_t pc) const;
  const Area* AreaOf(std::uint32_t address, std::uint32_t size) const;

  uc_engine* engine_ = nullptr;
  uc_context* fresh_ = nullptr;  // registers after a reset, but for the stack pointer and the program counter
  uc_context* before_ = nullptr;  // registers when the slice began
  ExecutionRecorder* recorder_ = nullptr;
  std::vector<Area> areas_;
  std::vector<MemoryRegion> regions_;
  std::uint64_t writableBytes_ = 0;
  std::vector<Breakpoint> breakpoints_;
  std::optional<uc_hook> codeHook_;
  bool replaying_ = false;
  std::optional<std::uint32_t> exception_;
  struct BadAccess {
    uc_mem_type type;
    std::uint32_t address;
  };
  std::optional<BadAccess> badAccess_;
  mutable std::mutex mutex_;
};

}  // namespace workbench
