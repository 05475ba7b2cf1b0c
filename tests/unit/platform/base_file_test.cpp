#include <gtest/gtest.h>
#include <sys/stat.h>

#include "doubles/scratch_disk.h"

namespace platform {
namespace {

struct Files : testing::Test {
  /// Every line of a file with its offset: "0:first|7:second!" where "!" says that the line had no end.
  static std::string Lines(const std::string& path, std::size_t limit = TextReader::kLongestLine) {
    TextReader reader;
    if (!reader.Open(path)) return "cannot be opened";
    std::string picture;
    std::string_view line;
    for (std::uint64_t at = 0; reader.ReadLine(&line, limit); at = reader.Position()) {
      picture += std::to_string(at) + ":" + std::string(line) + (reader.lineEnded() ? "|" : "!");
    }
    return picture;
  }

  doubles::ScratchDisk disk;
};

TEST_F(Files, LineFeedsAreWrittenAsCrLf) {
  TextWriter writer;
  ASSERT_TRUE(writer.Open("C:\\out.cov"));
  writer.Write("one\ntwo");
  writer.WriteRaw("\r\nthree");
  writer.Write("\n\n");
  EXPECT_TRUE(writer.Close());
  EXPECT_EQ(disk.Bytes("out.cov"), "one\r\ntwo\r\nthree\r\n\r\n");
  ASSERT_TRUE(writer.Open("C:\\out.cov"));
  EXPECT_TRUE(writer.Close());
  EXPECT_EQ(disk.Bytes("out.cov"), "") << "opening truncates";
}

TEST_F(Files, AFullDiskIsReportedAndKeepsWhatFitted) {
  TextWriter writer;
  ASSERT_TRUE(writer.Open("C:\\full.cov"));
  SetDiskSpace(5);
  writer.Write("one\ntwo");
  EXPECT_TRUE(writer.ok()) << "not yet on the disk";
  EXPECT_FALSE(writer.Close());
  EXPECT_FALSE(writer.Error().empty());
  EXPECT_EQ(disk.Bytes("full.cov"), "one\r\n");
  SetDiskSpace(std::nullopt);
  ASSERT_TRUE(writer.Open("C:\\full.cov"));
  writer.Write("again");
  EXPECT_TRUE(writer.Close()) << writer.Error();
}

TEST_F(Files, LinesAreReadWithEitherEnd) {
  const struct {
    const char *what, *bytes, *lines;
  } rows[] = {
      {"CR LF", "one\r\ntwo", "0:one|5:two!"},
      {"LF", "one\n\ntwo\n", "0:one|4:|5:two|"},
      {"a CR alone stays", "a\rb\r\nc\r", "0:a\rb|5:c\r!"},
      {"empty", "", ""},
      {"an end only", "\r\n", "0:|"},
  };
  for (const auto& row : rows) {
    disk.Put("in", row.bytes);
    EXPECT_EQ(Lines("C:\\in"), row.lines) << row.what;
  }
  EXPECT_EQ(Lines("C:\\none"), "cannot be opened");
  EXPECT_EQ(Lines("C:\\"), "cannot be opened") << "a directory";
}

TEST_F(Files, LinesAcrossPiecesOfTheFileStayWhole) {
  std::string bytes;
  std::size_t count = 0;
  while (bytes.size() < 700000) bytes += "line " + std::to_string(count++) + "\r\n";
  disk.Put("in", bytes);
  TextReader reader;
  ASSERT_TRUE(reader.Open("C:\\in"));
  std::string_view line;
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_TRUE(reader.ReadLine(&line));
    ASSERT_EQ(line, "line " + std::to_string(i));
  }
  EXPECT_FALSE(reader.ReadLine(&line));
}

TEST_F(Files, LongLinesAreCutAndTheirRestSkipped) {
  for (const std::size_t length :
       {std::size_t{65535}, TextReader::kLongestLine, std::size_t{65537}, std::size_t{900000}}) {
    disk.Put("in", "a\n" + std::string(length, 'x') + "\r\nnext\n");
    const std::string kept(std::min(length, TextReader::kLongestLine), 'x');
    EXPECT_EQ(Lines("C:\\in"), "0:a|2:" + kept + "|" + std::to_string(length + 4) + ":next|") << length;
    EXPECT_EQ(Lines("C:\\in", 3), "0:a|2:xxx|" + std::to_string(length + 4) + ":nex|") << length;
  }
}

TEST_F(Files, PiecesForScanningHoldAtLeastWhatIsAsked) {
  const std::string bytes(300000, 'y');
  disk.Put("in", bytes);
  TextReader reader;
  ASSERT_TRUE(reader.Open("C:\\in"));
  std::size_t total = 0;
  for (std::string_view piece; !(piece = reader.Peek(1000)).empty();) {
    if (total + 1000 <= bytes.size()) {
      ASSERT_GE(piece.size(), 1000u);
    }
    const std::size_t taken = std::min<std::size_t>(piece.size(), 777);
    reader.Skip(taken);
    total += taken;
    ASSERT_EQ(reader.Position(), total);
  }
  EXPECT_EQ(total, bytes.size());
}

TEST_F(Files, ReplacingIsAllOrNothing) {
  std::string error;
  ASSERT_TRUE(ReplaceFile("C:\\state.json", "{\"old\": 1}", &error)) << error;
  SetDiskSpace(4);
  EXPECT_FALSE(ReplaceFile("C:\\state.json", "{\"new\": 2}", &error));
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(disk.Bytes("state.json"), "{\"old\": 1}");
  EXPECT_EQ(ListDirectory("C:\\"), std::vector<std::string>{"state.json"}) << "nothing is left behind";
  SetDiskSpace(std::nullopt);
  EXPECT_TRUE(ReplaceFile("C:\\STATE.json", "{}"));
  EXPECT_EQ(disk.Bytes("state.json"), "{}");
  EXPECT_FALSE(ReplaceFile("C:\\no\\state.json", "{}", &error));
  ASSERT_EQ(mkfifo(ToNative("C:\\pipe").c_str(), 0600), 0);
  EXPECT_FALSE(ReplaceFile("C:\\pipe", "{}", &error)) << "only files are replaced";
}

TEST_F(Files, WholeFilesHaveALimit) {
  disk.Put("in", "12345");
  EXPECT_EQ(ReadFile("C:\\in", 5), "12345");
  EXPECT_EQ(ReadFile("C:\\in", 4), std::nullopt);
  EXPECT_EQ(ReadFile("C:\\none"), std::nullopt);
  EXPECT_EQ(FileSize("C:\\in"), 5u);
  EXPECT_EQ(FileSize("C:\\"), std::nullopt);
}

}  // namespace
}  // namespace platform
