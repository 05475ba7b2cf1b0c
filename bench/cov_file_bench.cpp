#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "harness.h"
#include "persist/cov_file.h"
#include "persist/cov_output.h"
#include "persist/cov_reader.h"
#include "platform/files.h"
#include "platform/paths.h"

// What the rows of a coverage file cost, against the bare transport of the same bytes.

namespace {

constexpr std::size_t kRows = 1'000'000;
constexpr std::size_t kChunk = 256 * 1024;
constexpr std::uint32_t kStart = 0x08000000;

struct Row {
  std::uint64_t count;
  std::uint32_t pass;
  char address[9];
};

std::vector<Row> MakeRows() {
  std::mt19937 random(5);
  std::vector<Row> rows(kRows);
  for (std::size_t i = 0; i < kRows; ++i) {
    // Eight digits hold almost every count; one row in a hundred is wider.
    rows[i].count = i % 100 == 0 ? 5'000'000'000 : random() >> (6 + random() % 26);
    rows[i].pass = random() % 4;
    std::snprintf(rows[i].address, sizeof rows[i].address, "%08zx", kStart + 2 * i);
  }
  return rows;
}

/// Files of this run, gone with the object.
struct Scratch {
  Scratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "cov-bench-XXXXXX").string();
    native = mkdtemp(pattern.data());
  }
  ~Scratch() { std::filesystem::remove_all(native); }
  std::string Native(const char* name) const { return native + "/" + name; }
  std::string Product(const char* name) const { return platform::FromNative(Native(name)); }
  std::string native;
};

const coverage::CovHeader kHeader{"Debug", "demo", coverage::CovType::kRange, {}};

void WriteFile(const std::string& product, const std::vector<Row>& rows) {
  platform::TextWriter file;
  if (!file.Open(product)) std::abort();
  coverage::CovOutput out(file);
  out.Header(kHeader, false);
  out.Section({coverage::kWindowSection, 1, kStart, kStart + 2 * kRows - 1, 1, 50, {}});
  for (const Row& row : rows) out.Row(row.count, row.pass, {row.address, 8});
  out.Finish();
  if (!file.Close()) std::abort();
}

struct Sum final : coverage::CovSectionSink {
  Take BeginSection(const coverage::CovSection&) override { return Take::kRows; }
  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) override {
    rows += counts.size();
    last = counts.back().value ^ pass.back().value;
  }
  std::size_t rows = 0;
  std::uint32_t last = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const Scratch scratch;
  const std::vector<Row> rows = MakeRows();
  const std::string written = scratch.Product("written.cov");
  WriteFile(written, rows);
  const std::string bytes = platform::ReadFile(written).value();
  const std::string native = scratch.Native("written.cov");

  bench::Suite suite("coverage files");
  suite.Measure("floor: write the bytes", kRows, [&] {
    const int file = open(scratch.Native("floor").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (std::size_t at = 0; at < bytes.size(); at += kChunk) {
      if (write(file, bytes.data() + at, std::min(kChunk, bytes.size() - at)) < 0) std::abort();
    }
    close(file);
  });
  suite.Measure("rows out", kRows, [&] { WriteFile(scratch.Product("out.cov"), rows); });
  suite.RequireAtMost("rows out / write() of the same bytes", "rows out", "floor: write the bytes", 4);

  suite.Measure("floor: read and find the lines", kRows, [&] {
    const int file = open(native.c_str(), O_RDONLY);
    const auto chunk = std::make_unique<char[]>(kChunk);
    std::size_t lines = 0;
    for (ssize_t got; (got = read(file, chunk.get(), kChunk)) > 0;) {
      const char* at = chunk.get();
      const char* const end = at + got;
      while ((at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) !=
             nullptr) {
        ++lines;
        ++at;
      }
    }
    close(file);
    if (lines < kRows) std::abort();
  });
  suite.Measure("rows in", kRows, [&] {
    platform::TextReader file;
    coverage::CovHeader header;
    Sum sum;
    if (!file.Open(written)) std::abort();
    coverage::CovReader reader(file);
    if (!reader.ReadHeader(header)) std::abort();
    reader.ReadSections(header.type, coverage::SectionFileLine::kNone, sum);
    if (sum.rows != kRows) std::abort();
    bench::Keep(sum.last);
  });
  suite.RequireAtMost("rows in / a line scan of the same bytes", "rows in", "floor: read and find the lines",
                      2.4);
  return suite.Run(argc, argv);
}
