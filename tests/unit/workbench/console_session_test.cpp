#include <gtest/gtest.h>

#include <sstream>
#include <thread>

#include "doubles/scratch_disk.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

/// A command that does what its line says, so that a test can be read as a session.
class ScriptedCommand final : public qal::IQCmdClient2 {
 public:
  ~ScriptedCommand() { Join(); }
  void Join() {
    if (worker_.joinable()) worker_.join();
  }

  qal::Status QueryInterface(const qal::Guid*, void**) override { return qal::kNoInterface; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  qal::Status GetCommandNames(qal::VariantArray** names) override {
    const std::string texts[] = {"measure", "me"};
    *names = platform::NewTextArray(texts);
    return qal::kOk;
  }
  qal::Status GetCommandNamesEx(qal::VariantArray** names, std::int32_t*) override {
    return GetCommandNames(names);
  }
  qal::Status CancelCommand() override { return qal::kOk; }
  qal::Status ExecuteCommand(qal::WideText arguments, char16_t** result, char16_t** prompt,
                             qal::Flag* wantsMore, std::uint16_t* status,
                             qal::IQCommandOutput* output) override {
    const std::string line = platform::Narrow(arguments);
    *wantsMore = qal::kFalse;
    *status = 0;
    const auto ends = [&](std::string_view word) {
      return line.size() >= word.size() && line.ends_with(word);
    };
    if (ends("lines")) {
      for (const char* text : {"\tone\n", "two", "three\r\nfour\n"}) {
        output->WriteLine(platform::Wide(text).get(), nullptr);
      }
    } else if (ends("background")) {
      Join();
      *status = 0xFFFF;
      worker_ = std::thread([output] {
        for (int i = 0; i < 10'000; ++i) output->WriteLine(platform::Wide(std::to_string(i)).get(), nullptr);
        output->EndOutput(nullptr);
      });
    } else if (ends("ask")) {
      *wantsMore = qal::kTrue;
      *prompt = platform::NewWide("how much? ");
    } else if (ends("box")) {
      const auto answer =
          platform::ShowMessageBox("Shall it be?", platform::Icon::kQuestion, platform::Buttons::kYesNo);
      *result = platform::NewWide(answer == platform::Answer::kYes ? "yes" : "no");
    } else if (ends("fail")) {
      *result = platform::NewWide("Invalid parameter");
      return qal::kFail;
    } else if (ends("quietly")) {
      return qal::kFail;
    } else {
      *result = platform::NewWide("[" + line + "]");
    }
    return qal::kOk;
  }

 private:
  std::thread worker_;
};

/// A console on a script, with the scripted command in place of a component.
class Session {
 public:
  explicit Session(const std::string& script, bool keepGoing = false)
      : lines_(ScriptLines({}, std::make_unique<std::istringstream>(script))),
        console_(*lines_, out_, {keepGoing}) {
    disk_.Put("work/a.txt", "first\r\nsecond\r\n\r\nlast");
    ide_ = std::make_unique<Ide>(IdePlaces{"C:\\work", "C:\\state", ""}, console_);
    console_.Attach(*ide_);
    ide_->Services().Advise(&qal::iid::kCmdClient2, &command_);
    for (const char* name : {"measure", "me"}) {
      ide_->Commands().AddCommand(platform::Wide(name).get(), platform::Wide("[<what>]").get(),
                                  name[2] == '\0');
    }
    status_ = console_.Run();
  }

  std::string Said() const { return out_.str(); }
  int StatusOf() const { return status_; }

 private:
  doubles::ScratchDisk disk_;
  ScriptedCommand command_;
  std::unique_ptr<LineSource> lines_;
  std::ostringstream out_;
  Console console_;
  std::unique_ptr<Ide> ide_;
  int status_ = -1;
};

TEST(Console, WaitsForTheEndOfBackgroundOutput) {
  const std::string said = Session("me background\nme done\n").Said();
  EXPECT_TRUE(said.ends_with("\n9998\n9999\n> me done\n[me done]\n")) << said.substr(said.size() - 100);
}

TEST(Console, EndsAfterAVerbThatCannotBeCarriedOut) {
  const Session session("where\nme on\n");
  EXPECT_EQ(session.Said(), "> where\nerror: no program is loaded; program load FILE loads one\n");
  EXPECT_EQ(session.StatusOf(), 1);
  const Session keepsGoing("where\nnonsense 1\nme on\n", true);
  EXPECT_EQ(keepsGoing.Said(),
            "> where\nerror: no program is loaded; program load FILE loads one\n"
            "> nonsense 1\nerror: nonsense is no command and no verb; help lists them\n"
            "> me on\n[me on]\n");
  EXPECT_EQ(keepsGoing.StatusOf(), 1);
}

TEST(Console, GivesAnOpenBoxTheCautiousAnswerAtTheEndOfTheScript) {
  EXPECT_NE(Session("me box\n").Said().find("\nno\n"), std::string::npos);
}

TEST(Console, FeedsACommandThatAsksForMore) {
  EXPECT_EQ(Session("me ask\nwhere\n# comment\n").Said(), "> me ask\n> where\n[where]\n> # comment\n");
}

TEST(Console, RefusesWordsThatMakeNoSense) {
  const struct {
    const char* line;
    const char* reason;
  } rows[] = {
      {"program", "load, info or functions is missing"},
      {"program load", "the file is missing"},
      {"program load nothing.elf", nullptr},
      {"program eat", "program eat is not known: load, info or functions"},
      {"run 0", "no program is loaded; program load FILE loads one"},
      {"record everything", "record everything is not known: path, counts or off"},
      {"refuse 2 1", "the first address is above the last"},
      {"limits 0 0x100000000", "0x100000000 is no 32-bit address"},
      {"service clock off", "there is no service clock"},
      {"service source maybe", "the service must be on or off, not maybe"},
      {"head x me", "the number of lines is no number: x"},
      {"head 1 where", "where is no command"},
      {"automation enable", "the component offers no automation"},
      {"help me", "there is no verb me"},
      {"restart", "JepCoverage.dll is not installed beside this program"},
  };
  for (const auto& row : rows) {
    const std::string said = Session(std::string(row.line) + "\n").Said();
    const std::string expected = "> " + std::string(row.line) + "\nerror: " + (row.reason ? row.reason : "");
    EXPECT_EQ(said.substr(0, expected.size()), expected);
    if (row.reason) {
      EXPECT_EQ(said, expected + "\n");
    }
  }
}

}  // namespace
}  // namespace workbench
