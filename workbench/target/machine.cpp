#include "workbench/target/machine.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "workbench/program/program.h"

namespace workbench {
namespace {

constexpr std::uint32_t kPage = 1024;
constexpr std::uint32_t kRamStart = 0x20000000;
constexpr std::uint32_t kRamLeast = 64 * 1024;
constexpr std::uint32_t kStackLeast = 16 * 1024;
constexpr std::uint64_t kMemoryMost = 64u << 20;
// An address that no program reaches: runs end by hooks, never by the simulator's own end address.
constexpr std::uint64_t kNowhere = 0xfffffffe;

void Require(uc_err error, const char* what) {
  if (error != UC_ERR_OK)
    throw TargetError(std::string("The simulator failed to ") + what + ": " + uc_strerror(error) + ".");
}

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", value);
  return text;
}

// A stretch of memory that is wanted, in 64 bits so that the top of the address space needs no care.
struct Wanted {
  std::uint64_t start;
  std::uint64_t end;
  bool writable;
};

// The vector table stands where the image begins.
std::uint32_t VectorWord(const Program& program, std::uint32_t index) {
  std::array<std::uint8_t, 4> bytes{};
  for (const Segment& segment : program.Segments()) {
    if (segment.bytes.empty()) continue;
    program.ReadImage(segment.address + 4 * index, bytes.data(), 4);
    break;
  }
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

constexpr std::array kRegisters = {
    UC_ARM_REG_R0,  UC_ARM_REG_R1, UC_ARM_REG_R2, UC_ARM_REG_R3, UC_ARM_REG_R4,  UC_ARM_REG_R5,
    UC_ARM_REG_R6,  UC_ARM_REG_R7, UC_ARM_REG_R8, UC_ARM_REG_R9, UC_ARM_REG_R10, UC_ARM_REG_R11,
    UC_ARM_REG_R12, UC_ARM_REG_SP, UC_ARM_REG_LR, UC_ARM_REG_PC, UC_ARM_REG_XPSR};

}  // namespace

Machine::Machine(const Program& program) {
  LayOut(program);
  Open();
  Reset(program);
}

Machine::~Machine() {
  if (fresh_ != nullptr) uc_context_free(fresh_);
  if (before_ != nullptr) uc_context_free(before_);
  if (engine_ != nullptr) uc_close(engine_);
}

void Machine::LayOut(const Program& program) {
  std::vector<Wanted> wanted;
  for (const Segment& segment : program.Segments()) {
    // Initialised data is loaded where the start-up code finds it and used elsewhere.
    const bool copied = segment.address != segment.virtualAddress;
    wanted.push_back({segment.address, segment.address + std::uint64_t{segment.bytes.size()}, false});
    wanted.push_back({segment.virtualAddress, segment.virtualAddress + std::uint64_t{segment.memorySize},
                      segment.writable && (copied || !segment.executable)});
  }
  wanted.push_back({kRamStart, kRamStart + kRamLeast, true});
  const std::uint32_t stack = VectorWord(program, 0);
  if (stack >= kRamStart && stack - kRamStart <= kMemoryMost / 2)
    wanted.push_back({kRamStart, stack, true});
  else if (stack >= kStackLeast)
    wanted.push_back({stack - kStackLeast, stack, true});

  std::sort(wanted.begin(), wanted.end(), [](const Wanted& a, const Wanted& b) { return a.start < b.start; });
  std::vector<Wanted> merged;
  std::uint64_t total = 0;
  for (Wanted want : wanted) {
    if (want.end <= want.start) continue;
    want.start = want.start / kPage * kPage;
    want.end = (want.end + kPage - 1) / kPage * kPage;
    if (want.end > (std::uint64_t{1} << 32))
      throw TargetError("The image reaches beyond the 32-bit address space.");
    if (!merged.empty() && want.start < merged.back().end) {
      // One page serves both: it must be writable when either is.
      merged.back().end = std::max(merged.back().end, want.end);
      merged.back().writable |= want.writable;
    } else {
      merged.push_back(want);
    }
  }
  for (const Wanted& want : merged) total += want.end - want.start;
  if (total > kMemoryMost)
    throw TargetError("The image needs " + std::to_string(total >> 20) +
                      " MiB of target memory; the target has at most " + std::to_string(kMemoryMost >> 20) +
                      " MiB.");
  for (const Wanted& want : merged) {
    Area area;
    area.start = static_cast<std::uint32_t>(want.start);
    area.size = static_cast<std::uint32_t>(want.end - want.start);
    area.writable = want.writable;
    // Mapped into the simulator where it stands, so that it can be read without asking the simulator.
    area.bytes = std::make_unique<std::uint8_t[]>(area.size);
    if (area.writable) area.before = std::make_unique<std::uint8_t[]>(area.size);
    regions_.push_back({area.start, area.start + (area.size - 1), area.writable});
    if (area.writable) writableBytes_ += area.size;
    areas_.push_back(std::move(area));
  }
}

void Machine::Open() {
  Require(uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &engine_), "open");
  Require(uc_ctl_set_cpu_model(engine_, UC_CPU_ARM_CORTEX_M3), "select the processor");
  for (const Area& area : areas_) {
    const std::uint32_t rights = area.writable ? UC_PROT_ALL : UC_PROT_READ | UC_PROT_EXEC;
    Require(uc_mem_map_ptr(engine_, area.start, area.size, rights, area.bytes.get()), "map memory");
  }
  AddHook(UC_HOOK_BLOCK, reinterpret_cast<void*>(&Machine::OnBlock), 1, 0);
  AddHook(UC_HOOK_MEM_INVALID, reinterpret_cast<void*>(&Machine::OnBadAccess), 1, 0);
  AddHook(UC_HOOK_INTR, reinterpret_cast<void*>(&Machine::OnException), 1, 0);
  Require(uc_context_alloc(engine_, &fresh_), "keep registers");
  Require(uc_context_alloc(engine_, &before_), "keep registers");
  const std::uint32_t link = 0xffffffff;
  uc_reg_write(engine_, UC_ARM_REG_LR, &link);
  Require(uc_context_save(engine_, fresh_), "keep registers");
}

uc_hook Machine::AddHook(int type, void* callback, std::uint64_t first, std::uint64_t last) {
  uc_hook hook = 0;
  Require(uc_hook_add(engine_, &hook, type, callback, this, first, last), "watch the program");
  return hook;
}

void Machine::Reset(const Program& program) {
  const std::lock_guard lock(mutex_);
  for (Area& area : areas_) {
    std::vector<std::uint8_t> wanted(area.size);
    for (const Segment& segment : program.Segments()) {
      const std::uint64_t start = std::max<std::uint64_t>(segment.address, area.start);
      const std::uint64_t end = std::min<std::uint64_t>(segment.address + std::uint64_t{segment.bytes.size()},
                                                        std::uint64_t{area.start} + area.size);
      if (start < end)
        std::memcpy(wanted.data() + (start - area.start), segment.bytes.data() + (start - segment.address),
                    end - start);
    }
    if (std::memcmp(wanted.data(), area.bytes.get(), area.size) == 0) continue;
    if (recorder_ != nullptr) recorder_->ForgetCode(area.start, area.size);
    std::memcpy(area.bytes.get(), wanted.data(), area.size);
    DropTranslations(area.start, area.size);
  }
  Require(uc_context_restore(engine_, fresh_), "reset the registers");
  const std::uint32_t stack = VectorWord(program, 0) & ~3u;
  const std::uint32_t vector = VectorWord(program, 1);
  const std::uint32_t pc = (program.IsInCode(vector & ~1u) ? vector : program.Entry()) & ~1u;
  uc_reg_write(engine_, UC_ARM_REG_SP, &stack);
  uc_reg_write(engine_, UC_ARM_REG_PC, &pc);
}

void Machine::DropTranslations(std::uint32_t start, std::uint64_t size) {
  uc_ctl_remove_cache(engine_, std::uint64_t{start}, std::uint64_t{start} + size);
}

void Machine::SetExact(bool exact) {
  if (exact == codeHook_.has_value()) return;
  if (exact) {
    codeHook_ = AddHook(UC_HOOK_CODE, reinterpret_cast<void*>(&Machine::OnCode), 1, 0);
  } else {
    uc_hook_del(engine_, *codeHook_);
    codeHook_.reset();
  }
  for (const Area& area : areas_) DropTranslations(area.start, area.size);
}

void Machine::SetBreakpoints(std::vector<std::uint32_t> addresses) {
  for (std::size_t i = 0; i < breakpoints_.size();) {
    const std::uint32_t address = breakpoints_[i].address;
    if (const auto kept = std::find(addresses.begin(), addresses.end(), address); kept != addresses.end()) {
      addresses.erase(kept);
      ++i;
      continue;
    }
    uc_hook_del(engine_, breakpoints_[i].hook);
    breakpoints_.erase(breakpoints_.begin() + static_cast<std::ptrdiff_t>(i));
    DropTranslations(address, 2);
  }
  for (const std::uint32_t address : addresses) {
    breakpoints_.push_back(
        {address, AddHook(UC_HOOK_CODE, reinterpret_cast<void*>(&Machine::OnBreakpoint), address, address)});
    DropTranslations(address, 2);
  }
}

Machine::SliceEnd Machine::RunSlice(bool exact) {
  const std::lock_guard lock(mutex_);
  SetExact(exact);
  if (!exact) KeepState();
  exception_.reset();
  badAccess_.reset();
  const uc_err error = uc_emu_start(engine_, Pc() | 1, kNowhere, 0, 0);
  // Stopped at a block event, the simulator may still show the program counter of the last code event.
  if (const auto block = recorder_->StoppedAtBlock()) uc_reg_write(engine_, UC_ARM_REG_PC, &*block);
  SliceEnd end;
  end.pc = Pc();
  if (error != UC_ERR_OK || exception_) {
    if (!exact && badAccess_ && badAccess_->type != UC_MEM_FETCH_UNMAPPED &&
        badAccess_->type != UC_MEM_FETCH_PROT)
      end.pc = ReplayToFault();
    end.fault = FaultText(error, end.pc);
  }
  return end;
}

void Machine::KeepState() {
  uc_context_save(engine_, before_);
  for (Area& area : areas_)
    if (area.writable) std::memcpy(area.before.get(), area.bytes.get(), area.size);
}

// After a bad access in a slice without code events the program counter stands at the start of the block. The
// slice is run once more, unrecorded, with code events, which keep the program counter exact.
std::uint32_t Machine::ReplayToFault() {
  uc_context_restore(engine_, before_);
  for (Area& area : areas_)
    if (area.writable) std::memcpy(area.bytes.get(), area.before.get(), area.size);
  SetExact(true);
  replaying_ = true;
  uc_emu_start(engine_, Pc() | 1, kNowhere, 0, 0);
  replaying_ = false;
  return Pc();
}

std::string Machine::FaultText(uc_err error, std::uint32_t pc) const {
  if (badAccess_) {
    const std::string address = Hex(badAccess_->address);
    switch (badAccess_->type) {
      case UC_MEM_FETCH_UNMAPPED:
      case UC_MEM_FETCH_PROT:
        return "Branch to " + address + ", where there is no memory.";
      case UC_MEM_WRITE_PROT:
        return "The instruction at " + Hex(pc) + " writes to " + address + ", which is read-only.";
      case UC_MEM_WRITE_UNMAPPED:
        return "The instruction at " + Hex(pc) + " writes to " + address + ", where there is no memory.";
      default:
        return "The instruction at " + Hex(pc) + " reads from " + address + ", where there is no memory.";
    }
  }
  if (exception_) {
    switch (*exception_) {
      case 2:
        return "Supervisor call before " + Hex(pc) + ": the target has no exceptions.";
      case 7:
        return "Breakpoint instruction at " + Hex(pc) + ".";
      case 8:
        return "Exception return without an exception.";
      default:
        return "Exception " + std::to_string(*exception_) + " at " + Hex(pc) +
               ": the target has no exceptions.";
    }
  }
  if (error == UC_ERR_INSN_INVALID) return "The target cannot execute the instruction at " + Hex(pc) + ".";
  return "The simulator stopped at " + Hex(pc) + ": " + uc_strerror(error) + ".";
}

std::uint32_t Machine::ReadRegister(unsigned index) const {
  std::uint32_t value = 0;
  if (index < kRegisters.size()) uc_reg_read(engine_, kRegisters[index], &value);
  return value;
}

const Machine::Area* Machine::AreaOf(std::uint32_t address, std::uint32_t size) const {
  for (const Area& area : areas_)
    if (address >= area.start && address - area.start < area.size &&
        size <= area.size - (address - area.start))
      return &area;
  return nullptr;
}

bool Machine::Read(std::uint32_t address, void* buffer, std::uint32_t size) const {
  const std::lock_guard lock(mutex_);
  const Area* area = AreaOf(address, size);
  if (area == nullptr) return false;
  std::memcpy(buffer, area->bytes.get() + (address - area->start), size);
  return true;
}

bool Machine::Write(std::uint32_t address, const void* bytes, std::uint32_t size) {
  const std::lock_guard lock(mutex_);
  const Area* area = AreaOf(address, size);
  if (area == nullptr) return false;
  if (size == 0) return true;
  recorder_->ForgetCode(address, size);
  std::memcpy(area->bytes.get() + (address - area->start), bytes, size);
  DropTranslations(address, size);
  return true;
}

std::uint16_t Machine::Halfword(std::uint32_t address) const {
  const Area* area = AreaOf(address, 2);
  if (area == nullptr) return 0;
  const std::uint8_t* bytes = area->bytes.get() + (address - area->start);
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

void Machine::OnBlock(uc_engine* engine, std::uint64_t address, std::uint32_t size, void* self) {
  Machine& machine = *static_cast<Machine*>(self);
  if (machine.replaying_) return;
  if (machine.recorder_->OnBlock(static_cast<std::uint32_t>(address), size)) uc_emu_stop(engine);
}

void Machine::OnCode(uc_engine* engine, std::uint64_t address, std::uint32_t, void* self) {
  Machine& machine = *static_cast<Machine*>(self);
  if (machine.replaying_) return;
  if (machine.recorder_->OnCode(static_cast<std::uint32_t>(address))) uc_emu_stop(engine);
}

void Machine::OnBreakpoint(uc_engine* engine, std::uint64_t address, std::uint32_t, void* self) {
  Machine& machine = *static_cast<Machine*>(self);
  if (machine.replaying_) return;
  if (machine.recorder_->OnBreakpoint(static_cast<std::uint32_t>(address))) uc_emu_stop(engine);
}

bool Machine::OnBadAccess(uc_engine*, uc_mem_type type, std::uint64_t address, int, std::int64_t,
                          void* self) {
  static_cast<Machine*>(self)->badAccess_ = BadAccess{type, static_cast<std::uint32_t>(address)};
  return false;
}

void Machine::OnException(uc_engine* engine, std::uint32_t number, void* self) {
  static_cast<Machine*>(self)->exception_ = number;
  uc_emu_stop(engine);
}

}  // namespace workbench
