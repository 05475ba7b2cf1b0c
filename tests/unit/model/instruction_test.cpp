#include <gtest/gtest.h>

#include <map>
#include <random>

#include "doubles/target.h"
#include "literal_records.h"
#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "model/instruction_walk.h"
#include "unit/loose_records.h"

namespace coverage {
namespace {

/// Instructions from a table, each under its own address unless a text says otherwise.
class Listing final : public InstructionSource {
 public:
  struct Line {
    std::uint32_t size;
    std::string text;
  };
  std::map<std::uint32_t, Line> lines;
  int asked = 0;

  void Add(std::uint32_t address, std::initializer_list<std::uint32_t> sizes) {
    for (const std::uint32_t size : sizes) {
      lines[address] = {size, platform::Format("%x", address)};
      address += size;
    }
  }
  bool InstructionAt(std::uint32_t address, Instruction& out) override {
    ++asked;
    const auto found = lines.find(address);
    if (found == lines.end()) return false;
    out = {found->second.size, found->second.text, "code"};
    return true;
  }
};

/// "address+size" of every instruction handed on.
std::string Walked(std::uint32_t start, std::uint32_t end, std::optional<InstructionAlignment> alignment,
                   InstructionSource& source, std::uint64_t limit = ~std::uint64_t{0}) {
  std::string text;
  ForEachRecorded(InstructionWalk(start, end, alignment, source), limit,
                  [&](std::uint32_t address, const Instruction& instruction) {
                    text += platform::Format("%x+%u ", address, instruction.size);
                  });
  return text;
}

TEST(AddressOfText, ReadsTheNumberInFront) {
  for (const auto& [text, value] : {std::pair{"00001000", 0x1000u},
                                    {"0x20 main", 0x20u},
                                    {"  ABc:", 0xABCu},
                                    {"", 0u},
                                    {"main", 0u},
                                    {"0x", 0u},
                                    {"FFFFFFFFF", 0xFFFFFFFFu},
                                    {"8000000g", 0x8000000u}}) {
    EXPECT_EQ(AddressOfText(text), value) << text;
  }
}

TEST(InstructionWalk, Walks) {
  Listing code;
  code.Add(0x0C, {4, 4, 2, 2, 4, 2});  // c 10 14 16 18 1c
  code.Add(0xFFFFFFF8, {4, 4});
  code.lines[0x40] = {0xFFFFFFFF, "40"};
  struct Case {
    const char* what;
    std::uint32_t start, end;
    std::optional<InstructionAlignment> alignment;
    const char* walked;
  };
  const Case cases[] = {
      {"from the start without an alignment", 0x10, 0x17, {}, "10+4 14+2 16+2 "},
      {"an instruction at the end is not begun", 0x10, 0x16, {}, "10+4 14+2 "},
      {"an empty range", 0x10, 0x10, {}, ""},
      {"from the aligned address below", 0x12, 0x15, {{4, 0}}, "10+4 14+2 "},
      {"what ends before the aligned start is passed over", 0x14, 0x17, {{4, 8}}, "14+2 16+2 "},
      {"what reaches into the range is kept", 0x12, 0x15, {{2, 2}}, "10+4 14+2 "},
      {"an offset larger than the address is ignored", 0x0C, 0x11, {{4, 16}}, "c+4 10+4 "},
      {"failures are passed over by 2, then by the last size",
       0x06,
       0x2B,
       {},
       "c+4 10+4 14+2 16+2 18+4 1c+2 "},
      {"after a failure the last size counts", 0x0A, 0x11, {{2, 0}}, "c+4 10+4 "},
      {"the top of the address space", 0xFFFFFFF8, 0xFFFFFFFF, {}, "fffffff8+4 fffffffc+4 "},
      {"an instruction beyond the top", 0x40, 0xFFFFFFFF, {}, "40+4294967295 "},
  };
  for (const Case& c : cases) EXPECT_EQ(Walked(c.start, c.end, c.alignment, code), c.walked) << c.what;
}

TEST(InstructionWalk, KeepsGoingWhenNothingDecodes) {
  Listing nothing;
  EXPECT_EQ(Walked(0xFFFFFF00, 0xFFFFFFFF, {}, nothing), "");
  EXPECT_EQ(nothing.asked, 128);
}

// --- the reader

struct ReaderTest : testing::Test {
  ReaderTest() { target.OfferTo(host); }
  std::string Read(std::uint32_t address) {
    InstructionReader reader(&host);
    Instruction instruction;
    if (!reader.InstructionAt(address, instruction)) return "none";
    return platform::Format("%u %s|%s", instruction.size, std::string(instruction.addressText).c_str(),
                            std::string(instruction.codeText).c_str());
  }
  doubles::TargetDouble target;
  doubles::HostDouble host;
};

TEST_F(ReaderTest, ReadsThroughTheServices) {
  target.Instructions(0x1000, {4, 0, 2});
  const auto [address, code] = doubles::TargetDouble::Texts(0x1000, 4);
  EXPECT_EQ(Read(0x1000), "4 " + address + "|" + code);
  EXPECT_EQ(Read(0x1002), "none") << "nothing there";
  target.Instructions(0x2000, {0});
  EXPECT_EQ(Read(0x2000), "none") << "size 0 is a failure";
  host.Withdraw(qal::iid::kMemory);
  EXPECT_EQ(Read(0x1000), "none");
  target.OfferTo(host);
  host.Withdraw(qal::iid::kTargetInformation);
  EXPECT_EQ(Read(0x1000), "none");
  EXPECT_FALSE(InstructionReader(&host).Alignment());
  EXPECT_FALSE(InstructionReader(nullptr).Alignment());
}

TEST_F(ReaderTest, AnAlignmentOfZeroIsNoAnswer) {
  target.information.alignment = 4;
  EXPECT_EQ(InstructionReader(&host).Alignment(), (InstructionAlignment{4, 0}));
  target.information.alignment = 0;
  EXPECT_FALSE(InstructionReader(&host).Alignment());
}

TEST_F(ReaderTest, ReadsWithTheAccessWidthAndNotBeyondTheTop) {
  doubles::CallLog log;
  doubles::StubMemory memory(log);
  host.Offer(memory);
  target.information.alignment = 2;
  Read(0x1000);
  Read(0xFFFFFFF0);
  EXPECT_EQ(log.Text(),
            "memory.ReadMemory(0x1000, 0x101f, 2)\nmemory.ReadMemory(0xfffffff0, 0xffffffff, 2)\n");
}

// --- the cache

TEST(DisassemblyCache, KeepsUntilItIsDropped) {
  Listing code;
  code.Add(0x0FFC, {4, 1, 3, 2});  // ffc 1000 1001 1004
  code.lines[0x2000] = {300, "2000"};
  code.lines[0x2002] = {2, std::string(70'000, 'a')};
  DisassemblyCache cache;
  const auto generation = cache.generation();
  const auto texts = [&] {
    std::string all;
    for (const std::uint32_t at : {0xFFCu, 0x1000u, 0x1001u, 0x1004u, 0x1002u, 0x2000u, 0x2002u}) {
      Instruction instruction;
      all += cache.Fetch(at, code, instruction)
                 ? platform::Format("%u:%zu%.4s ", instruction.size, instruction.addressText.size(),
                                    std::string(instruction.addressText).c_str())
                 : "- ";
    }
    return all;
  };
  const std::string first = texts();
  EXPECT_EQ(first, "4:3ffc 1:41000 3:41001 2:41004 - 300:42000 2:70000aaaa ");
  EXPECT_EQ(code.asked, 7);
  EXPECT_EQ(texts(), first);
  EXPECT_EQ(code.asked, 9) << "only the two that are out of proportion are read again";
  EXPECT_EQ(cache.size(), 4u);
  cache.Drop();
  EXPECT_GT(cache.generation(), generation);
  Instruction instruction;
  EXPECT_FALSE(cache.Find(0x1000, instruction));
  EXPECT_EQ(texts(), first);
  EXPECT_EQ(code.asked, 16);
}

TEST(DisassemblyCache, PassesOverWhatIsKnownToFail) {
  Listing code;
  code.Add(0x1000, {2});
  code.Add(0xA000, {2});
  DisassemblyCache cache;
  Instruction instruction;
  const auto fails = [&](std::uint32_t from, std::uint32_t end, std::uint32_t step) {
    for (std::uint64_t at = from; at < end; at += step) {
      EXPECT_FALSE(cache.Fetch(static_cast<std::uint32_t>(at), code, instruction)) << at;
    }
  };
  fails(0x0800, 0x0802, 2);  // elsewhere
  fails(0x1002, 0xA000, 2);
  fails(0x1001, 0x1011, 4);
  fails(0xFFFFFFF0, 0xFFFFFFFF, 2);
  const struct {
    std::uint32_t address, step;
    std::uint64_t next;
  } rows[] = {
      {0x0800, 2, 0x0802}, {0x1002, 2, 0xA000}, {0x5000, 2, 0xA000},          {0x1002, 4, 0xA002},
      {0x1002, 1, 0x1003}, {0x1001, 4, 0x1011}, {0xFFFFFFF4, 2, 0x100000000}, {0x9000, 0x20000, 0x29000},
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (const auto& row : rows) {
      EXPECT_EQ(cache.Failed().After(row.address, row.step), row.next) << std::hex << row.address;
    }
  }
  EXPECT_EQ(cache.size(), 0u);
  EXPECT_TRUE(cache.Fetch(0x1000, code, instruction));
  cache.Drop();
  code.Add(0x1002, {2});
  EXPECT_TRUE(cache.Fetch(0x1002, code, instruction)) << "nothing of the holes is left";
}

// --- percentages

struct PercentageTest : ReaderTest {
  PercentageTest() : instance(&host, 0x1000, 0x1013, "", 1) {
    target.Fill(0x1000, 0x1013);
    instance.Register(0x1000, 0x1013);
  }
  std::uint32_t Compute() {
    instance.ComputePercentage(false, cache);
    return instance.percentage;
  }
  LooseInstance instance;
  DisassemblyCache cache;
};

TEST_F(PercentageTest, FollowsTheCode) {
  instance.counts->AddOne(0x1002, 1, 0);
  EXPECT_EQ(Compute(), 10u);
  target.Instructions(0x1000, {4, 4, 4, 4, 4});
  EXPECT_EQ(Compute(), 10u) << "the known code holds until it is dropped";
  cache.Drop();
  EXPECT_EQ(Compute(), 0u) << "no instruction begins at the executed address now";
  instance.counts->AddOne(0x1004, 1, 0);
  EXPECT_EQ(Compute(), 20u);
}

TEST_F(PercentageTest, FollowsMemoryThatBecomesReadable) {
  target.Forget(0x1004);
  instance.counts->AddOne(0x1004, 1, 0);
  EXPECT_EQ(Compute(), 0u) << "0 of 9";
  target.Instructions(0x1004, {2});
  EXPECT_EQ(Compute(), 10u);
}

TEST(InstructionPlan, AgreesWithRecordingEveryText) {
  std::mt19937 random(4711);
  const auto pick = [&](std::uint32_t low, std::uint32_t high) {
    return std::uniform_int_distribution<std::uint32_t>(low, high)(random);
  };
  for (int round = 0; round < 120; ++round) {
    const std::uint32_t base = round % 4 == 0 ? 0xFFFFFE00 : round % 4 == 1 ? 0 : 0x2000;
    DisassemblyCache cache;
    InstructionPlan plan;
    Listing code;
    const auto write = [&] {
      code.lines.clear();
      for (std::uint32_t at = 0; at < 0x200; ++at) {
        if (pick(0, 5) == 0 || (at % 2 == 1 && pick(0, 9) != 0)) continue;
        // Mostly the instruction's own address; sometimes another, in or out of the range.
        const std::uint32_t said = pick(0, 15) == 0 ? base + pick(0, 0x1FF) : base + at;
        code.lines[base + at] = {pick(0, 20) == 0 ? pick(1, 40) : pick(1, 3) * 2 - (pick(0, 9) == 0),
                                 platform::Format("%08X  x", said)};
      }
    };
    write();
    for (int step = 0; step < 6; ++step) {
      const std::uint32_t start = base + pick(0, 0x180);
      const std::uint32_t end = start + pick(0, std::min(0x7Fu, 0xFFFFFFFF - start));
      CoverageCellTable table;
      // The table mostly has the range of the instance; one that was refused has another or none.
      if (pick(0, 9) != 0) table.Layout(start, pick(0, 9) == 0 ? base : end);
      std::optional<InstructionAlignment> alignment;
      if (pick(0, 2) != 0) {
        alignment = {static_cast<std::uint16_t>(pick(1, 8)), static_cast<std::uint16_t>(pick(0, 8))};
      }
      for (int again = 0; again < 3; ++again) {
        for (std::uint32_t k = pick(0, 60); k > 0; --k) table.AddOne(base + pick(0, 0x1FF), 1, 0);
        plan.Update(start, end, alignment, table, cache, code);
        CachedInstructions cached(cache, code);
        ASSERT_EQ(PercentageOf(plan.Executed(table), plan.recorded()),
                  literal::Percentage(start, end, alignment, table, cached))
            << "round " << round;
      }
      if (pick(0, 2) == 0) {
        write();
        cache.Drop();
      }
    }
  }
}

}  // namespace
}  // namespace coverage
