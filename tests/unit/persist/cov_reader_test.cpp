#include "persist/cov_reader.h"

#include <gtest/gtest.h>

#include "doubles/scratch_disk.h"
#include "platform/text.h"

namespace coverage {
namespace {

/// Writes down what it is given: a line a section, then its rows.
class PictureSink : public CovSectionSink {
 public:
  Take BeginSection(const CovSection& section) override {
    picture += platform::Format("[%x %x %u %u %s%s%s]\n", section.start, section.end, section.enableStatus,
                                section.percentage, section.functionName.c_str(),
                                section.fileName.empty() ? "" : " of ", section.fileName.c_str());
    return answer;
  }
  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) override {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      EXPECT_EQ(counts[i].address, pass[i].address);
      picture += platform::Format("%x %u %u\n", counts[i].address, counts[i].value, pass[i].value);
    }
  }
  void EndSection() override { picture += "end\n"; }

  std::string picture;
  Take answer = Take::kRows;
};

class CovReaderTest : public testing::Test {
 protected:
  std::string Read(const std::string& content, SectionFileLine fileLine = SectionFileLine::kNone) {
    drive_.Put("a.cov", content);
    platform::TextReader file;
    EXPECT_TRUE(file.Open("C:\\a.cov"));
    CovReader reader(file);
    const bool valid = reader.ReadHeader(header);
    PictureSink sink;
    reader.ReadSections(header.type, fileLine, sink);
    constexpr const char* kTypes[] = {"untyped", "range", "file", "other"};
    return platform::Format("%s %s %s|%s|%s\n", valid ? "valid" : "invalid",
                            kTypes[static_cast<int>(header.type)], header.configuration.c_str(),
                            header.project.c_str(), header.fileName.c_str()) +
           sink.picture;
  }

  CovHeader header;
  doubles::ScratchDisk drive_;
};

const std::string kHead = "Configuration name= Debug\r\nProject name= demo\r\n";
const std::string kRangeHead = kHead + "Type= Range\r\n";
const std::string kColumns = " (Times)\t(Pass)\t(Address)\r\n";

std::string Section(const std::string& start, const std::string& end, const std::string& name = "") {
  return "[Coverage Window 1]\r\nStart Address= " + start + "\r\nEnd Address= " + end +
         "\r\nEnable_status= 00000001\r\nPercentage= 00000042\r\nFunction_name= " + name + "\r\n" + kColumns;
}

TEST_F(CovReaderTest, Headers) {
  const std::string section = Section("1000", "1fff");
  const std::string read = "[1000 1fff 1 42 ]\nend\n";
  const struct {
    std::string content;
    std::string picture;
  } kRows[] = {
      {kRangeHead + "File name= \r\n" + section, "valid range Debug|demo|\n" + read},
      {kRangeHead + section, "valid range Debug|demo|\n" + read},
      {kHead + "Type= File\r\nFile name= $(PROJDIR)\\a.c\r\n" + section,
       "valid file Debug|demo|$(PROJDIR)\\a.c\n" + read},
      {kHead + "Type= range\r\nFile name= x\r\n" + section, "valid other Debug|demo|x\n" + read},
      {kHead + "Type= File\r\n" + section, "valid file Debug|demo|\n" + read},
      {"Configuration name= a\nProject name=\nType= Range\n" + section, "valid range a||\n" + read},
      {"Configuration name= a\nno project\nType= Range\n", "invalid range a||\n"},
      {"no configuration\nProject name= b\n", "invalid untyped |b|\n"},
      {"", "invalid untyped ||\n"},
      {kHead, "valid untyped Debug|demo|\n"},
      {std::string("Configuration\0 name= a\nProject name= b\0c\n", 42), "invalid untyped |b|\n"},
  };
  for (const auto& row : kRows) EXPECT_EQ(Read(row.content), row.picture) << row.content;
}

TEST_F(CovReaderTest, TypedSectionsAndRows) {
  EXPECT_EQ(Read(kRangeHead + Section("00001000", "0000100f") +
                 "00000003\tT\t00001000\r\n00000000\t-\t00001002\r\n" + "5000000000\tT/F\t00001004\r\n" +
                 Section("0x2000", "1ffffffff", "main") + "00000007\tF\t00002000 main"),
            "valid range Debug|demo|\n[1000 100f 1 42 ]\n1000 3 1\n1002 0 0\n1004 4294967295 3\nend\n"
            "[2000 ffffffff 1 42 main]\n2000 7 2\nend\n");
  std::string bare = Section("1000", "100f");
  bare.erase(bare.find(kColumns));
  EXPECT_EQ(Read(kRangeHead + bare + Section("2000", "200f")),
            "valid range Debug|demo|\n[1000 100f 1 42 ]\nend\n[2000 200f 1 42 ]\nend\n");
}

TEST_F(CovReaderTest, UntypedSectionsAndRows) {
  EXPECT_EQ(
      Read(kHead + "[Coverage Window 1]\r\nStart Address= 1001\r\nEnd Address= 1010\r\nEnable_status= 2\r\n"
                   "00000003      T      00001000\r\n00000004      F      00001002"),
      "valid untyped Debug|demo|\n[1001 1010 1 0 ]\n1000 3 1\n1002 4 2\nend\n");
}

TEST_F(CovReaderTest, ASectionMayNameItsSourceFile) {
  std::string section = Section("1000", "1fff", "main");
  section.insert(section.find(" (Times)"), "File_name= C:\\a.c\r\n");
  const std::string content = kRangeHead + section + "00000001\tT\t00001000";
  EXPECT_EQ(Read(content, SectionFileLine::kAllowed),
            "valid range Debug|demo|\n[1000 1fff 1 42 main of C:\\a.c]\n1000 1 1\nend\n");
  EXPECT_EQ(Read(content, SectionFileLine::kNone),
            "valid range Debug|demo|\n[1000 1fff 1 42 main]\n1000 1 1\nend\n")
      << "the line stands in the place of the column line, and that one is no row";
}

TEST_F(CovReaderTest, BadSectionsAreSkippedWholeAndTheOthersRead) {
  const std::string good = Section("2000", "2fff") + "00000001\tT\t00002000\r\n";
  const std::string read = "[2000 2fff 1 42 ]\n2000 1 1\nend\n";
  std::string noEquals = Section("1000", "1fff");
  noEquals.replace(noEquals.find("End Address= "), 13, "End Address: ");
  std::string noPercentage = Section("1000", "1fff");
  noPercentage.erase(noPercentage.find("Percentage"), 22);
  for (const std::string& bad : {noEquals, noPercentage, std::string("[Coverage Window 1]\r\n")}) {
    EXPECT_EQ(Read(kRangeHead + good + bad + "00000009\tT\t00002000\r\n" + good),
              "valid range Debug|demo|\n" + read + read)
        << bad;
  }
}

TEST_F(CovReaderTest, LongLinesAreCutAndNeverReadOn) {
  const std::string megabyte(1 << 20, 'x');
  EXPECT_EQ(Read("Configuration name= " + megabyte + "\r\nProject name= demo\r\nType= Range\r\n" + megabyte +
                 "\r\n" + Section("1000", "1fff", megabyte) + "00000001\tT\t00001000" + megabyte +
                 "\r\n00000002\tF\t00001002\r\n"),
            "valid range " + std::string(664 - 20, 'x') + "|demo|\n[1000 1fff 1 42 " +
                std::string(767 - 15, 'x') + "]\n1000 1 1\n1002 2 2\nend\n");
}

TEST_F(CovReaderTest, EveryCutOfAFileReadsWhatIsThere) {
  const std::string whole =
      kRangeHead + Section("1000", "1fff") + "00000001\tT\t00001000\r\n00000002\tF\t00001002\r\n";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::string picture = Read(whole.substr(0, size));
    if (size < whole.find("Percentage")) {
      EXPECT_EQ(picture.find('['), std::string::npos) << size;
    }
  }
}

TEST_F(CovReaderTest, RowsAreTheSameWhereverChunksEnd) {
  std::string content = kRangeHead + Section("0", "ffffffff");
  std::string picture = "valid range Debug|demo|\n[0 ffffffff 1 42 ]\n";
  for (unsigned i = 0; i < 40000; ++i) {
    // Every eleventh row is of another width, so that the fast columns and the general way alternate.
    content += platform::Format(i % 11 == 0 ? "%u\t%s\t%x\n" : "%08u\t%s\t%08x\r\n", i,
                                i % 3 == 0 ? "T/F" : "-", 2 * i);
    picture += platform::Format("%x %u %u\n", 2 * i, i, i % 3 == 0 ? 3 : 0);
  }
  EXPECT_TRUE(Read(content) == picture + "end\n");
}

TEST_F(CovReaderTest, AFileMayNotHaveMoreLaidOutThanIsReasonable) {
  CellBudget budget;
  EXPECT_TRUE(budget.Take(0x1000, 0x200FFF));
  EXPECT_TRUE(budget.Take(0x200FFF, 0x1000));
  EXPECT_FALSE(budget.Take(0x1000, 0x201000));
  EXPECT_FALSE(budget.Take(0xFFFFFFFF, 0));
  int more = 0;
  while (budget.Take(0, 0x1FFFFF)) ++more;
  EXPECT_EQ(more, 30);
}

}  // namespace
}  // namespace coverage
