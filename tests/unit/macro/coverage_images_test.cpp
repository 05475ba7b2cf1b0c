#include "macro/coverage_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "doubles/host.h"
#include "doubles/target.h"
#include "macro/coverage_test_client.h"
#include "macro/image_escapes.h"
#include "unit/loose_records.h"

namespace coverage {
namespace {

constexpr char kSource[] = "C:\\space\\demo\\main.c";

/// A range window over 0x1000 to 0x1007 and a file window with two functions, on a target of 2-byte
/// instructions.
class ImagesTest : public testing::Test, protected ImageWindows {
 protected:
  ImagesTest() {
    target.Fill(0, 0x2fff);
    target.OfferTo(host);
    range = &Open(WindowKind::kRange, {});
    Add(*range, 0x1000, 0x1007, "");
    file = &Open(WindowKind::kFile, kSource);
    Add(*file, 0x2000, 0x2003, "main");
    Add(*file, 0x2004, 0x2009, "step");
  }

  CoverageWindow& Open(WindowKind kind, std::string source) {
    windows.push_back(std::make_unique<CoverageWindow>());
    windows.back()->kind = kind;
    windows.back()->sourceFile = std::move(source);
    return *windows.back();
  }
  CoverageInstance& Add(CoverageWindow& window, std::uint32_t start, std::uint32_t end, std::string name) {
    instances.push_back(std::make_shared<LooseInstance>(&host, start, end, std::move(name), 1));
    instances.back()->Register(start, end);
    window.instances[static_cast<std::uint32_t>(window.instances.size() + 1)] = instances.back();
    return *instances.back();
  }
  void Number(CoverageWindow& window, const std::vector<std::shared_ptr<CoverageInstance>>& parts) {
    window.instances.clear();
    for (const auto& part : parts)
      window.instances[static_cast<std::uint32_t>(window.instances.size() + 1)] = part;
  }
  void Execute(std::uint32_t address, std::uint64_t count, std::uint32_t pass = 0) {
    for (auto& instance : instances) instance->counts->AddOne(address, count, pass);
  }

  std::vector<const CoverageWindow*> OpenWindows() override {
    std::vector<const CoverageWindow*> open;
    for (const auto& window : windows) open.push_back(window.get());
    return open;
  }
  DisassemblyCache& Instructions() override { return cache; }

  CoverageImages Images() { return {&host, *this}; }
  std::string Image(const std::vector<std::string>& tokens, std::uint32_t options = 15) {
    ImageOutput image;
    image.Append(ImageHead(options));
    Images().WriteImage(tokens, image);
    const std::unique_ptr<char16_t, decltype(&qal::FreeText)> text(image.Take(), qal::FreeText);
    return platform::Narrow(qal::WideText{text.get()});
  }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  DisassemblyCache cache;
  std::vector<std::unique_ptr<CoverageWindow>> windows;
  std::vector<std::shared_ptr<LooseInstance>> instances;
  CoverageWindow* range;
  CoverageWindow* file;
  const std::vector<std::string> both = {"rng+0x1000 - 0x1007", std::string("src+") + kSource};
};

std::string Told(const ImageVerdict& verdict) {
  return std::to_string(verdict.runStatus) + "|" + verdict.resultName + "|" + verdict.messages;
}

TEST_F(ImagesTest, WritesWhatIsSelectedAndOpen) {
  Execute(0x1000, 5, 1);
  Execute(0x1002, 1, 3);
  EXPECT_EQ(Images().ListItems(),
            (std::vector<std::string>{"rng-0x1000 - 0x1007", std::string("src-") + kSource}));
  EXPECT_EQ(Image({"rng+0x1000 - 0x1007"}, 3),
            "1.003(rng+0x1000 - 0x1007)~1000 1007~1000 5 T 1002 1 T/F 1004 0 - 1006 0 - ");
  EXPECT_EQ(Image({"rng-0x1000 - 0x1007", "rng+0x1000 - 0x1006", "xyz+0x1000 - 0x1007"}, 3), "1.003");
  EXPECT_EQ(Image({"SRC+c:\\SPACE\\demo\\main.c"}, 3),
            "1.003(SRC+c:*SPACE*demo*main.c)~main~2000 0 - 2002 0 - ~step~2004 0 - 2006 0 - 2008 0 - ");
  Add(*range, 0, 3, "");
  EXPECT_EQ(Image({"rng+0x0 - 0x3"}, 3), "1.003(rng+0x0 - 0x3)~0 3~00000000 0 - 2 0 - ");
}

/// Whatever is open, under whatever names and however it is sorted since: an image passes and equals itself;
/// when one cell changes, the first option that looks at what changed tells it, with the cell's address.
TEST_F(ImagesTest, AnyImagePassesUntilACellChanges) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    windows.clear();
    instances.clear();
    std::uint32_t next = 0;
    for (std::uint32_t count = 1 + random() % 4; count > 0; --count) {
      const bool ofFile = random() % 2 == 0;
      CoverageWindow& window = Open(ofFile ? WindowKind::kFile : WindowKind::kRange,
                                    ofFile ? platform::Format("C:\\a (%%28)*~\\%u.c", count) : "");
      for (std::uint32_t part = random() % 4 + 1; part > 0; --part) {
        const std::uint32_t start = next + 2 * (random() % 8);
        next = start + 2 + 2 * (random() % (next == 0 && round % 10 == 0 ? 2500 : 16));
        const char* const names[] = {"f", "(anonymous namespace)::\xC3\x84::~\xC3\x84(char*)", "%7E%25"};
        Add(window, start, next - 1, ofFile ? names[random() % 3] : "");
      }
    }
    for (std::uint32_t at = 0; at < next; at += 2) Execute(at, random() % 3, random() % 4);
    std::vector<std::string> all = Images().ListItems();
    for (std::string& token : all) token[3] = '+';
    const auto sort = [&] {
      for (auto& window : windows) {
        std::vector<std::shared_ptr<CoverageInstance>> parts;
        for (const auto& [number, part] : window->instances) parts.push_back(part);
        std::shuffle(parts.begin(), parts.end(), random);
        Number(*window, parts);
      }
    };

    const CoverageInstance& changed = *instances[random() % instances.size()];
    const std::uint32_t at = changed.start + 2 * (random() % ((changed.end - changed.start + 1) / 2));
    const CoverageCell before = *changed.counts->Lookup(at);
    std::vector<std::string> kept;
    for (std::uint32_t options = 0; options < 16; ++options) {
      sort();
      kept.push_back(Image(all, options));
      sort();
      EXPECT_EQ(Told(Images().VerifyImage(kept.back())), "0||");
      EXPECT_EQ(Told(CompareImages(kept.back(), kept.back())), "0||");
    }
    Execute(at, random() % 2, random() % 4);
    const CoverageCell after = *changed.counts->Lookup(at);
    for (std::uint32_t options = 0; options < 16; ++options) {
      const char* name = "";
      if ((options & 8) != 0 && before.pass != after.pass) name = "Pass mismatch";
      if ((options & 2) != 0 && (before.times == 0) != (after.times == 0)) name = "Execution Path mismatch";
      if ((options & 4) != 0 && before.times != after.times) name = "Instruction execution time mismatch";
      for (const auto& verdict :
           {Images().VerifyImage(kept[options]), CompareImages(kept[options], Image(all, options))}) {
        EXPECT_EQ(verdict.resultName, name) << options << ": " << verdict.messages;
        EXPECT_EQ(verdict.runStatus, *name == '\0' ? 0u : 1u);
        const bool placed = verdict.messages.find(platform::Format("0x%x", at)) != std::string::npos;
        EXPECT_EQ(placed, *name != '\0') << verdict.messages;
      }
    }
  }
}

TEST_F(ImagesTest, OneChangedCellIsToldByItsKind) {
  struct Row {
    std::uint32_t options;
    std::uint64_t before, more;
    std::uint32_t pass;
    const char* verified;
    const char* compared;
  };
  const Row rows[] = {
      {3, 0, 1, 0,
       "1|Execution Path mismatch|Range 0x1000 - 0x1007:& Instruction execution path mismatch at 0x1004 -- "
       "Image: No   "
       "System: Executed&&",
       "1|Execution Path mismatch|Range 0x1000 - 0x1007:&Execution path mismatch at address 0x1004. Image_1: "
       "No   "
       "Image_2: Executed&&"},
      {3, 2, 1, 0, "0||", "0||"},
      {7, 2, 1, 0,
       "1|Instruction execution time mismatch|Range 0x1000 - 0x1007:& Instruction Execution Time mismatch at "
       "0x1004 -- "
       "Image: 2   System: 3&&",
       "1|Instruction execution time mismatch|Range 0x1000 - 0x1007:&Instruction Execution Time mismatch at "
       "address "
       "0x1004. Image_1: 2   Image_2: 3&&"},
      {2, 2, 0, 2, "0||", "0||"},
      {10, 2, 0, 2,
       "1|Pass mismatch|Range 0x1000 - 0x1007:& Pass information mismatch at address 0x1004 -- Image: -   "
       "System: F&&",
       "1|Pass mismatch|Range 0x1000 - 0x1007:&Pass information mismatch at address 0x1004. Image_1: -   "
       "Image_2: F&&"},
  };
  for (const Row& row : rows) {
    instances[0]->counts->Clear();
    Execute(0x1004, row.before);
    const std::string image = Image({both[0]}, row.options);
    Execute(0x1004, row.more, row.pass);
    EXPECT_EQ(Told(Images().VerifyImage(image)), row.verified) << row.options;
    EXPECT_EQ(Told(CompareImages(image, Image({both[0]}, 15))), row.compared) << row.options;
  }
}

TEST_F(ImagesTest, AnyCountPassesAtOnceAndItsLowBitsTellAChange) {
  for (const std::uint64_t count :
       {0x7fffffffULL, 0x80000000ULL, 0xffffffffULL, 0x100000000ULL, 5000000000ULL}) {
    instances[0]->counts->Clear();
    Execute(0x1004, count);
    const std::string exact = platform::Format("1.007(%s)~1000 1007~1000 0 - 1002 0 - 1004 %llu - 1006 0 - ",
                                               both[0].c_str(), static_cast<unsigned long long>(count));
    const std::vector<std::string> kept = {Image({both[0]}, 3), Image({both[0]}, 7), exact};
    for (const std::string& image : kept) EXPECT_EQ(Told(Images().VerifyImage(image)), "0||") << image;
    Execute(0x1004, 1);
    EXPECT_EQ(Images().VerifyImage(kept[1]).resultName, "Instruction execution time mismatch") << kept[1];
    EXPECT_EQ(Images().VerifyImage(exact).resultName, "Instruction execution time mismatch") << count;
  }
}

TEST_F(ImagesTest, NamesAndPathsAreReadAsTheyWereWritten) {
  const struct {
    std::uint32_t codePage;
    const char *text, *name, *token;
  } rows[] = {
      {platform::kUtf8, "a::~b(c*)", "a::%7Eb%28c%2A%29", "a::%7Eb%28c%2A%29"},
      {platform::kUtf8, "C:\\x\\y", "C:\\x\\y", "C:*x*y"},
      {platform::kUtf8, "%28 %7E %7e %2 100%", "%2528 %257E %7e %2 100%", "%2528 %257E %7e %2 100%"},
      {platform::kUtf8, "%%25(%(", "%%2525%28%%28", "%%2525%28%%28"},
      // Second bytes that are a backslash and a tilde by themselves.
      {platform::kShiftJis, "\x83\x5C\x83\x7E~\\", "\x83\x5C\x83\x7E%7E\\", "\x83\x5C\x83\x7E%7E*"},
  };
  for (const auto& row : rows) {
    platform::SetCodePage(row.codePage);
    EXPECT_EQ(WrittenName(row.text), row.name);
    EXPECT_EQ(WrittenToken(row.text), row.token);
    EXPECT_EQ(ReadName(row.name), row.text);
    EXPECT_EQ(ReadToken(row.token), row.text);
  }
  platform::SetCodePage(platform::kUtf8);
}

TEST_F(ImagesTest, OfEqualNamesTheRefusedOneStaysRefused) {
  file->instances.clear();
  Add(*file, 0x2000, 0x2003, "f").counts = std::make_unique<LooseCounts>(&host);
  Add(*file, 0x2004, 0x2007, "f");
  const auto refused = file->Instance(1);
  const auto counted = file->Instance(2);
  Number(*file, {counted, refused});
  const std::string image = Image({both[1]}, 3);
  EXPECT_EQ(Told(Images().VerifyImage(image)), "0||") << image;
  Number(*file, {refused, counted});
  EXPECT_EQ(Told(Images().VerifyImage(image)), "0||");
  EXPECT_EQ(Told(CompareImages(image, Image({both[1]}, 3))), "0||");
}

TEST_F(ImagesTest, WhatIsMissingIsNamed) {
  const std::string image = Image(both, 3);
  const struct {
    const char* image;
    const char* told;
  } verified[] = {
      {"1.003(rng+0x5000 - 0x5007)~5000 5007~",
       "1|Range not found|Range 0x5000 - 0x5007:&not found in current system.&&"},
      {"1.003(src+C:*space*demo*main.c)~f~2000 0 - ",
       "1|Range not found|Range main.c:& Function \"f\" not found in current system.&&"},
      {"1.003(rng+0x1000 - 0x1007)~1000 1007~1000 0 - ",
       "1|Address Mismatch|Range 0x1000 - 0x1007:& Instruction at  0x1002 not found in image.&&"},
      {"1.003(rng+0x1000 - 0x1007)~1000 1007~1002 0 - ",
       "1|Address Mismatch|Range 0x1000 - 0x1007:& Instruction address mismatch -- Image: 0x1002   System: "
       "0x1000&&"},
      {"1.003(rng+0x1000 - 0x1007)~1000 1007~1000 ",
       "1|Image file corrupted|Range 0x1000 - 0x1007:& Address 0x1000  execution information not found in "
       "image.&&"},
      {"1.011(rng+0x1000 - 0x1007)~1000 1007~1000 0 -", "1|Address Mismatch|Range 0x1000 - 0x1007:&&&"},
      {"1.003(rng+0x1000 - 0x1007)~1000 1007~1000 0 -",
       "1|Address Mismatch|Range 0x1000 - 0x1007:& Instruction at  0x1002 not found in image.&&"},
      {"1.003(rng+0x1000 - 0x1007", "2||"},
      {"1.003(rng+0x1000 - 0x1007)",
       "1|Address Mismatch|Range 0x1000 - 0x1007:& Instruction at  0x1000 not found in "
       "image.&&"},
      {"", "0||"},
  };
  for (const auto& row : verified) EXPECT_EQ(Told(Images().VerifyImage(row.image)), row.told) << row.image;

  const std::string one = "1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - 1002 2 T ";
  const struct {
    std::string second;
    const char* told;
  } compared[] = {
      {"1.015", "1|Range not found|Range 0x1000 - 0x1003:& Range Information not found in Image_2&&"},
      {one + "1004 0 - ", "1|Address mismatch|Range 0x1000 - 0x1003:&Image 2 has a larger address area.&&"},
      {"1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - ",
       "1|Address mismatch|Range 0x1000 - 0x1003:&Coverage Information for 0x1002 not found in image 2.&&"},
      {"1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - 1004 2 T ",
       "1|Address mismatch|Range 0x1000 - 0x1003:&Instruction address mismatch. Image_1: 0x1002   Image_2: "
       "0x1004&&"},
      {"1.015(rng+0x1000 - 0x1003)~1000 1003~1000 ",
       "1|Image file corrupted|Range 0x1000 - 0x1003:&Execution information for 0x1000 not found in image "
       "2&&"},
      {"1.015(rng+0x1000 - 0x1003)~1000 1003~1000 1 - 1002 2 t ", "0||"},
      {"1.015(rng+0x1000", "2||"},
  };
  for (const auto& row : compared) EXPECT_EQ(Told(CompareImages(one, row.second)), row.told) << row.second;
  EXPECT_EQ(Told(CompareImages("1.015(src+a.c)~f~1000 1 - ~g~", "1.015(src+a.c)~f~1000 1 - ")),
            "1|Range not found|Range a.c:& Function g not found in image 2&&&");
  EXPECT_EQ(
      Told(CompareImages("1.015(src+a.c)~f~1000 1 - ~f~2000 2 - ", "1.015(src+a.c)~f~2000 2 - ~f~1000 1 - ")),
      "0||");
  EXPECT_EQ(
      Told(CompareImages("1.015(rng+0x0 - 0x1)~0 1~0 ", "1.015(rng+0x0 - 0x1)~0 1~0 1 - ")),
      "1|Image file corrupted|Range 0x0 - 0x1:&Address 0x0 execution information not found in image 1&&");
}

/// The comparison passes over equal stretches; the literal one looks at every entry.
TEST(CompareImages, FindsTheOneEntryThatDiffersInALongImage) {
  std::mt19937 random(11);
  for (int round = 0; round < 200; ++round) {
    std::string entries[2];
    const std::uint32_t different = random() % 3000;
    for (std::uint32_t i = 0; i < 3000; ++i) {
      const std::uint32_t count = (random() % 2'000'000'000 >> random() % 30) + 1;
      for (int side = 0; side < 2; ++side) {
        entries[side] +=
            platform::Format("%x %u - ", 0x1000 + 2 * i, count + (side == 1 && i == different ? 7u : 0u));
      }
    }
    const std::string head = "1.005(rng+0x1000 - 0x276f)~1000 276f~";
    const ImageVerdict verdict = CompareImages(head + entries[0], head + entries[1]);
    EXPECT_NE(verdict.messages.find(platform::Format("mismatch at address 0x%x.", 0x1000 + 2 * different)),
              std::string::npos)
        << verdict.messages;
    const std::string loose = "1.003(rng+0x1000 - 0x276f)~1000 276f~";
    EXPECT_EQ(CompareImages(loose + entries[0], loose + entries[1]).runStatus, 0u);
  }
}

TEST_F(ImagesTest, TheTestClientKeepsWhatItIsGiven) {
  CoverageTestClient client(&host, nullptr, this, nullptr);
  EXPECT_EQ(host.Registered(qal::iid::kCoverageTestClient).size(), 1u);
  const auto selection = [&client] {
    platform::WideOut text;
    EXPECT_EQ(client.GetSelection(text.put()), 0);
    return text.str();
  };
  EXPECT_EQ(selection(), "1.003");
  qal::Flag unfinished = 1;
  client.SetSelectionChecked(platform::Wide("1.010(rng+0x1000 - 0x1007)(src+C:*space*demo*main.c)").get(),
                             &unfinished);
  EXPECT_EQ(unfinished, 0);
  EXPECT_EQ(selection(), "1.010(rng+0x1000 - 0x1007)(src+C:*space*demo*main.c)");
  unfinished = 1;
  client.SetSelectionChecked(platform::Wide("1.004(rng+0x1000 - 0x1007)(src+").get(), &unfinished);
  EXPECT_EQ(unfinished, 1);
  EXPECT_EQ(selection(), "1.004(rng+0x1000 - 0x1007)");
  client.SetSelection(platform::Wide("1.0-1").get());
  EXPECT_EQ(selection(), "1.0-1");
  client.SetSelection(nullptr);
  EXPECT_EQ(selection(), "1.003");

  platform::WideOut image, name, messages;
  client.SetSelection(platform::Wide("1.003(rng+0x1000 - 0x1007)").get());
  client.GetCurrentImage(image.put());
  std::uint32_t runStatus = 0;
  EXPECT_EQ(client.VerifyWithSelection(image.get(), nullptr, name.put(), messages.put(), &runStatus), 0);
  EXPECT_EQ(runStatus, 0u);
  EXPECT_EQ(client.Compare(image.get(), platform::Wide("1.003(").get(), nullptr, nullptr, &runStatus), 1);
  EXPECT_EQ(runStatus, 2u);

  platform::WideOut copy;
  EXPECT_EQ(client.TranslateImage(image.get(), 64, copy.put()), 1);
  EXPECT_TRUE(copy.empty());
  EXPECT_EQ(client.TranslateImage(image.get(), 32, copy.put()), 0);
  EXPECT_EQ(copy.str(), image.str());

  void* out = &client;
  EXPECT_EQ(client.QueryInterface(&qal::iid::kHostAux, &out), qal::kNoInterface);
  EXPECT_EQ(out, nullptr);
  platform::WideOut context;
  EXPECT_EQ(client.GetContextText(context.put()), qal::kFail);
}

}  // namespace
}  // namespace coverage
