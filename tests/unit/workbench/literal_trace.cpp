#include "unit/workbench/literal_trace.h"

#include <unicorn/unicorn.h>

#include <vector>

#include "workbench/program/program.h"

namespace workbench_test {
namespace {

struct Tracer {
  std::vector<std::uint8_t> flash = std::vector<std::uint8_t>(0x40000);
  std::vector<std::uint8_t> ram = std::vector<std::uint8_t>(0x10000);
  std::uint32_t end = 0;
  std::uint64_t left = 0;
  Totals totals;
  std::vector<std::uint64_t> fetched = std::vector<std::uint64_t>(0x20000);  // by halfword of flash
  std::uint32_t next = 0;    // behind the last executed instruction
  std::uint32_t branch = 1;  // address of the last instruction when it was a conditional branch, else odd
  unsigned conditions = 0;   // the rest of the IT block: how many members follow

  unsigned Halfword(std::uint32_t address) const {
    const bool inFlash = address < flash.size();
    const auto& bytes = inFlash ? flash : ram;
    const std::uint32_t at = inFlash ? address : address - 0x20000000;
    return bytes[at] | bytes[at + 1] << 8;
  }

  void Fetch(std::uint32_t address, bool passed) {
    if (left == 0) return;
    --left;
    ++fetched.at(address / 2);
    const unsigned first = Halfword(address);
    const bool wide = first >= 0xe800;
    next = address + (wide ? 4 : 2);
    branch = 1;
    if (conditions > 0) {
      --conditions;
      totals.passes[address] |= passed ? 1 : 2;
    } else if ((first & 0xff00) == 0xbf00 && (first & 0x0f) != 0) {
      conditions = first & 1 ? 4 : first & 2 ? 3 : first & 4 ? 2 : 1;
    } else if ((first >= 0xd000 && first < 0xde00) || (first & 0xf500) == 0xb100 ||
               (wide && (first & 0xf800) == 0xf000 && (first & 0x0380) != 0x0380 &&
                (Halfword(address + 2) & 0xd000) == 0x8000)) {
      branch = address;
    }
  }

  static void OnCode(uc_engine* engine, std::uint64_t at, std::uint32_t, void* self) {
    auto& tracer = *static_cast<Tracer*>(self);
    const auto address = static_cast<std::uint32_t>(at);
    if (tracer.branch != 1) tracer.totals.passes[tracer.branch] |= address == tracer.next ? 2 : 1;
    tracer.branch = 1;
    // Members of the IT block between the last executed instruction and this one were skipped.
    while (tracer.conditions > 0 && tracer.next != address) tracer.Fetch(tracer.next, false);
    if (address == tracer.end || tracer.left == 0) {
      uc_emu_stop(engine);
      return;
    }
    tracer.Fetch(address, true);
  }
};

}  // namespace

Totals LiteralTrace(const workbench::Program& program, std::uint32_t end, std::uint64_t most) {
  Tracer tracer;
  tracer.end = end;
  tracer.left = most;
  uc_engine* engine = nullptr;
  uc_open(UC_ARCH_ARM, static_cast<uc_mode>(UC_MODE_THUMB | UC_MODE_MCLASS), &engine);
  uc_ctl_set_cpu_model(engine, UC_CPU_ARM_CORTEX_M3);
  for (const workbench::Segment& segment : program.Segments())
    std::copy(segment.bytes.begin(), segment.bytes.end(), tracer.flash.begin() + segment.address);
  uc_mem_map_ptr(engine, 0, tracer.flash.size(), UC_PROT_ALL, tracer.flash.data());
  uc_mem_map_ptr(engine, 0x20000000, tracer.ram.size(), UC_PROT_ALL, tracer.ram.data());
  std::uint32_t start[2];
  std::copy_n(tracer.flash.begin(), 8, reinterpret_cast<std::uint8_t*>(start));
  uc_reg_write(engine, UC_ARM_REG_SP, &start[0]);
  tracer.next = start[1] & ~1u;
  uc_hook hook;
  uc_hook_add(engine, &hook, UC_HOOK_CODE, reinterpret_cast<void*>(&Tracer::OnCode), &tracer, 1, 0);
  uc_emu_start(engine, start[1] | 1, 0xfffffffe, 0, 0);
  uc_close(engine);
  for (std::uint32_t i = 0; i < tracer.fetched.size(); ++i)
    if (tracer.fetched[i] != 0) tracer.totals.times[2 * i] = tracer.fetched[i];
  return tracer.totals;
}

void Add(Totals& totals, const workbench::CountsReport& report) {
  for (const auto& pair : report.counts) totals.times[pair.first] += pair.second;
  for (const auto& pair : report.passes) totals.passes[pair.first] |= pair.second;
}

void Walked::Add(const workbench::PathReport& report) {
  std::uint64_t current = report.start;
  for (const auto& pair : report.pairs) {
    for (std::uint64_t address = current; address <= pair.first; address += 2) ++steps_.at(address / 2);
    current = pair.second;
  }
}

std::map<std::uint32_t, std::uint64_t> Walked::Times(
    const std::map<std::uint32_t, std::uint64_t>& starts) const {
  std::map<std::uint32_t, std::uint64_t> times;
  for (const auto& start : starts)
    if (steps_.at(start.first / 2) != 0) times[start.first] = steps_[start.first / 2];
  return times;
}

}  // namespace workbench_test
