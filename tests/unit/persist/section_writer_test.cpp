#include "persist/section_writer.h"

#include <gtest/gtest.h>

#include "doubles/scratch_disk.h"
#include "doubles/target.h"
#include "persist/cov_file.h"
#include "unit/loose_records.h"

namespace coverage {
namespace {

/// The rule as it is told: steps of 2 until the address is met or the end is reached.
class LiteralStepper {
 public:
  LiteralStepper(std::uint32_t start, std::uint32_t end) : step_(start), end_(end) {}
  bool Meet(std::uint32_t address) {
    if (first_ && address < step_) step_ = address;
    first_ = false;
    while (step_ != address) {
      step_ += 2;
      if (step_ != address && step_ >= end_) return false;
    }
    step_ += 2;
    return true;
  }

 private:
  std::uint64_t step_;
  std::uint64_t end_;
  bool first_ = true;
};

TEST(RowStepper, AgreesWithTheLiteralSteps) {
  for (const std::uint32_t base : {0u, 0x1000u, 0xFFFFFFE0u}) {
    for (std::uint32_t end = 0; end < 20; ++end) {
      for (std::uint32_t first = 0; first < 24; ++first) {
        for (std::uint32_t second = 0; second < 24; ++second) {
          RowStepper stepper(base + 6, base + end);
          LiteralStepper literal(base + 6, base + end);
          const bool met = stepper.Meet(base + first);
          ASSERT_EQ(met, literal.Meet(base + first)) << base << ' ' << end << ' ' << first;
          if (!met) continue;
          ASSERT_EQ(stepper.Meet(base + second), literal.Meet(base + second)) << end << ' ' << second;
        }
      }
    }
  }
}

class SectionWriterTest : public testing::Test {
 protected:
  SectionWriterTest() { target.OfferTo(host); }

  std::string Section(CoverageInstance& instance) {
    platform::TextWriter file;
    EXPECT_TRUE(file.Open("C:\\a.cov"));
    CovOutput out(file);
    DisassemblyCache cache;
    out.Header({"Debug", "demo", CovType::kRange, "$(PROJDIR)\\a.c"}, true);
    WriteInstanceSection(out, instance, 12, &host, cache);
    out.Finish();
    EXPECT_TRUE(file.Close());
    return drive.Bytes("a.cov");
  }

  doubles::ScratchDisk drive;
  doubles::HostDouble host;
  doubles::TargetDouble target;
};

TEST_F(SectionWriterTest, AnInstructionBelowTheRangeIsARowWithoutACell) {
  target.information.alignment = 4;
  target.Instructions(0x1000, {4, 2});
  LooseInstance instance(&host, 0x1002, 0x1005, "", 1);
  instance.Register(0x1002, 0x1005);
  instance.counts->AddOne(0x1004, 1, 2);
  const std::string content = Section(instance);
  EXPECT_EQ(content.substr(content.find("[")),
            "[Coverage Window 12]\r\nStart Address= 00001002\r\nEnd Address= 00001005\r\n"
            "Enable_status= 00000001\r\nPercentage= 00000000\r\nFunction_name= \r\n"
            " (Times)\t(Pass)\t(Address)\r\n00000000\t-\t00001000\r\n00000001\tF\t00001004");
}

TEST_F(SectionWriterTest, RowsEndWhereTheStepsMissAnInstruction) {
  target.Instructions(0x1000, {2, 3, 2, 2});
  LooseInstance instance(&host, 0x1000, 0x1007, "", 1);
  instance.Register(0x1000, 0x1007);
  const std::string content = Section(instance);
  EXPECT_EQ(content.substr(content.find("(Address)")),
            "(Address)\r\n00000000\t-\t00001000\r\n00000000\t-\t00001002");
}

TEST_F(SectionWriterTest, MoreTextsThanCellsReplaceTheLast) {
  target.information.alignment = 4;
  target.Fill(0x1000, 0x1004);
  LooseInstance instance(&host, 0x1002, 0x1003, "", 1);
  instance.Register(0x1002, 0x1003);
  const std::string content = Section(instance);
  EXPECT_EQ(content.substr(content.find("(Address)")), "(Address)\r\n00000000\t-\t00001002")
      << "one cell, so the second of two recorded texts stands in the place of the first";
}

TEST_F(SectionWriterTest, LongAddressTextsAndManyRowsComeThroughWhole) {
  platform::TextWriter file;
  ASSERT_TRUE(file.Open("C:\\a.cov"));
  CovOutput out(file);
  const std::string longText = "1000" + std::string(300 * 1024, 'x');
  std::string expected;
  for (int i = 0; i < 30000; ++i) {
    out.Row(7, 1, "1000 text");
    expected += "\r\n00000007\tT\t1000 text";
    if (i % 10000 == 1) {
      out.Row(8, 0, longText);
      expected += "\r\n00000008\t-\t" + longText;
    }
  }
  out.Finish();
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(drive.Bytes("a.cov") == expected);
}

}  // namespace
}  // namespace coverage
