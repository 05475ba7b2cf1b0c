#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

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

TEST_F(Files, AFileStaysAsItIsUntilAllIsWritten) {
  disk.Put("a.cov", "old");
  TextWriter writer;
  ASSERT_TRUE(writer.Open("C:\\A.COV"));
  SetDiskSpace(5);
  writer.Write("one\ntwo");
  EXPECT_TRUE(writer.ok()) << "not yet on the disk";
  EXPECT_FALSE(writer.Close());
  EXPECT_FALSE(writer.Error().empty());
  EXPECT_EQ(disk.Bytes("a.cov"), "old");
  std::string error;
  EXPECT_FALSE(ReplaceFile("C:\\a.cov", "new", &error));
  EXPECT_FALSE(error.empty());
  SetDiskSpace(std::nullopt);
  {
    TextWriter dropped;
    ASSERT_TRUE(dropped.Open("C:\\a.cov"));
    dropped.WriteRaw(std::string(1 << 20, 'x'));
  }
  EXPECT_EQ(disk.Bytes("a.cov"), "old");
  EXPECT_EQ(ListDirectory("C:\\"), std::vector<std::string>{"a.cov"}) << "nothing is left behind";
}

TEST_F(Files, AReplacedFileKeepsItsModeAndTheLinksToIt) {
  disk.Put("old", "old");
  disk.Put("sub/x", "");
  const std::string longName(250, 'n');
  const mode_t before = umask(027);
  ASSERT_EQ(chmod(ToNative("C:\\old").c_str(), 0604), 0);
  std::filesystem::create_symlink("old", disk.root() + "/link");
  std::filesystem::create_symlink("sub/../sub/new", disk.root() + "/dangling");
  const struct {
    std::string name, file;
    mode_t mode;
  } rows[] = {
      {"OLD", "old", 0604}, {"link", "old", 0604}, {"dangling", "sub/new", 0640}, {longName, longName, 0640}};
  for (const auto& row : rows) {
    EXPECT_TRUE(ReplaceFile("C:\\" + row.name, row.name)) << row.name;
    EXPECT_EQ(disk.Bytes(row.file), row.name);
    struct stat status {};
    EXPECT_EQ(stat((disk.root() + "/" + row.file).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, row.mode) << row.name;
  }
  umask(before);
  EXPECT_EQ(std::filesystem::read_symlink(disk.root() + "/link"), "old");
}

TEST_F(Files, WhatIsNoFileIsWrittenInPlaceOrRefused) {
  const std::string pipe = ToNative("C:\\pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  disk.Put("locked", "old");
  ASSERT_EQ(chmod(ToNative("C:\\locked").c_str(), 0444), 0);
  const bool mayWriteLocked = access(ToNative("C:\\locked").c_str(), W_OK) == 0;  // such as root
  disk.Put("folder/file", "");
  const struct {
    const char* path;
    bool opened, closed;
  } rows[] = {{"C:\\pipe", false, false},       {"C:\\folder", false, false},
              {"C:\\none\\file", false, false}, {"C:\\locked", mayWriteLocked, mayWriteLocked},
              {"\\dev\\null", true, true},      {"\\dev\\full", true, false}};
  for (const auto& row : rows) {
    TextWriter writer;
    EXPECT_EQ(writer.Open(row.path), row.opened) << row.path;
    writer.Write("x");
    EXPECT_EQ(writer.Close(), row.closed) << row.path;
  }
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Files, APipeIsWrittenAsLongAsSomebodyReads) {
  const std::string pipe = ToNative("C:\\pipe"), bytes(300000, 'z');
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int end = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  TextWriter writer;
  ASSERT_TRUE(writer.Open("C:\\pipe"));
  std::thread reader([&] {
    fcntl(end, F_SETFL, 0);
    std::string got;
    char piece[4096];
    for (ssize_t count; (count = read(end, piece, sizeof piece)) > 0;) {
      got.append(piece, static_cast<std::size_t>(count));
    }
    EXPECT_EQ(got, bytes);
  });
  writer.WriteRaw(bytes);
  EXPECT_TRUE(writer.Close()) << writer.Error();
  reader.join();
  ASSERT_TRUE(writer.Open("C:\\pipe"));
  close(end);
  writer.WriteRaw(bytes);
  EXPECT_FALSE(writer.Close()) << "and the process goes on";
}

TEST_F(Files, AFileThatCannotBeReplacedGetsTheContent) {
  disk.Put("gone", "a longer old content");
  const int file = open(ToNative("C:\\gone").c_str(), O_RDWR);
  std::filesystem::remove(disk.root() + "/gone");
  EXPECT_TRUE(ReplaceFile("\\proc\\self\\fd\\" + std::to_string(file), "new"));
  char got[64];
  EXPECT_EQ(std::string(got, static_cast<std::size_t>(pread(file, got, sizeof got, 0))), "new");
  close(file);
}

TEST_F(Files, KilledWritersLeaveAWholeFileAndNothingElse) {
  const std::string contents[] = {std::string(400000, 'a'), std::string(500000, 'b')};
  ASSERT_TRUE(ReplaceFile("C:\\f", contents[0]));
  for (int round = 0; round < 30; ++round) {
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
      for (int i = 0; i < 1000; ++i) ReplaceFile("C:\\f", contents[i % 2]);
      _exit(0);
    }
    usleep(static_cast<useconds_t>(3000 + 1000 * (round % 7)));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    const std::string found = disk.Bytes("f");
    ASSERT_TRUE(found == contents[0] || found == contents[1]) << found.size();
  }
  disk.Put(".f.qal-save-0123456789abcdef", "left by a killed writer");
  disk.Put(".f.qal-save-notes", "a person's");
  TextWriter running;
  ASSERT_TRUE(running.Open("C:\\f"));
  running.Write("running");
  EXPECT_TRUE(ReplaceFile("C:\\f", "other"));
  EXPECT_TRUE(running.Close()) << "its temporary file was let alone";
  EXPECT_EQ(disk.Bytes("f"), "running");
  EXPECT_EQ(ListDirectory("C:\\"), (std::vector<std::string>{".f.qal-save-notes", "f"}));
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
