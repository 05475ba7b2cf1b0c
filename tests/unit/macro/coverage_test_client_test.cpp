#include "macro/coverage_test_client.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "doubles/host.h"
#include "doubles/project_services.h"
#include "unit/loose_records.h"

namespace coverage {
namespace {

constexpr char kKept[] = "1.010(rng+0x1000 - 0x1007)";

/// Nothing is open but a range window without cells, and a person who does what a test says.
struct ClientTest : testing::Test, ImageWindows, ImageSelectionEditor {
  ClientTest() {
    host.Offer(project);
    window.instances[1] = instance;
  }
  std::vector<const CoverageWindow*> OpenWindows() override { return {&window}; }
  DisassemblyCache& Instructions() override { return cache; }
  bool Edit(ImageSelection& selection, std::uint32_t& answer) override { return edit(selection, answer); }

  std::string Selection() {
    platform::WideOut text;
    EXPECT_EQ(client->GetSelection(text.put()), 0);
    return text.str();
  }

  doubles::HostDouble host;
  doubles::StubProject project;
  DisassemblyCache cache;
  std::shared_ptr<LooseInstance> instance = std::make_shared<LooseInstance>(&host, 0x1000, 0x1007, "", 1);
  CoverageWindow window;
  std::function<bool(ImageSelection&, std::uint32_t&)> edit;
  std::unique_ptr<CoverageTestClient> client =
      std::make_unique<CoverageTestClient>(&host, nullptr, this, this);
};

TEST_F(ClientTest, AnOutPointerThatIsMissingStopsTheCallBeforeItDoesAnything) {
  client->SetSelection(platform::Wide(kKept).get());
  const platform::Wide image("1.003(rng+0x1000 - 0x1007)~1000 1007~");
  const platform::Wide malformed("1.003(");
  char16_t* text = nullptr;
  qal::Guid guid;
  qal::IQTestImageSource* source = nullptr;
  std::uint32_t number = 7;
  auto& c = *client;
  const qal::WideText i = image.get();
  const std::function<qal::Status()> refused[] = {
      [&] { return c.QueryInterface(&qal::iid::kUnknown, nullptr); },
      [&] { return c.QueryInterface(nullptr, reinterpret_cast<void**>(&text)); },
      [&] { return c.GetClientInfo(nullptr, &guid, &source, &number, &text); },
      [&] { return c.GetClientInfo(&text, nullptr, &source, &number, &text); },
      [&] { return c.GetClientInfo(&text, &guid, nullptr, &number, &text); },
      [&] { return c.GetClientInfo(&text, &guid, &source, nullptr, &text); },
      [&] { return c.GetClientInfo(&text, &guid, &source, &number, nullptr); },
      [&] { return c.GetImage(nullptr); },
      [&] { return c.GetCurrentImage(nullptr); },
      [&] { return c.GetSelection(nullptr); },
      [&] { return c.SetSelectionChecked(i, nullptr); },
      [&] { return c.Verify(i, nullptr, &text, &number); },
      [&] { return c.Verify(i, &text, nullptr, &number); },
      [&] { return c.Verify(i, &text, &text, nullptr); },
      [&] { return c.Verify(malformed.get(), &text, &text, nullptr); },
      [&] { return c.Compare(i, i, nullptr, &text, &number); },
      [&] { return c.Compare(i, i, &text, nullptr, &number); },
      [&] { return c.Compare(i, i, &text, &text, nullptr); },
      [&] { return c.VerifyWithSelection(i, i, nullptr, &text, &number); },
      [&] { return c.CompareWithSelection(i, i, i, i, &text, nullptr, &number); },
      [&] { return c.TranslateImage(i, 32, nullptr); },
      [&] { return c.GetDisplayName(nullptr); },
      [&] { return c.GetClientName(nullptr); },
      [&] { return c.GetContextText(nullptr); },
  };
  for (std::size_t row = 0; row < std::size(refused); ++row) EXPECT_EQ(refused[row](), qal::kFail) << row;
  EXPECT_TRUE(text == nullptr && number == 7);
  EXPECT_EQ(Selection(), kKept);
  EXPECT_EQ(c.TranslateImage(i, 64, nullptr), 1);
  EXPECT_EQ(c.SetSelectionChecked(malformed.get(), nullptr), 0);
  EXPECT_EQ(c.Verify(malformed.get(), nullptr, nullptr, &number), 1);
}

TEST_F(ClientTest, WhatTheDialogSaysWinsWhenItEnds) {
  for (const bool confirmed : {true, false}) {
    edit = [&](ImageSelection& selection, std::uint32_t& answer) {
      client->SetSelection(platform::Wide("1.007(rng+0x0 - 0x1)").get());
      EXPECT_EQ(selection.tokens, std::vector<std::string>{"rng-0x1000 - 0x1007"});
      selection.tokens[0][kTokenMark] = '+';
      selection.options = 9;
      answer = 5;
      return confirmed;
    };
    client->SetSelection(nullptr);
    client->EditSelection();
    EXPECT_EQ(Selection(), confirmed ? "1.009(rng+0x1000 - 0x1007)" : "1.007(rng+0x1000 - 0x1007)");
    edit = [](ImageSelection&, std::uint32_t& answer) {
      EXPECT_EQ(answer, 5u);
      return false;
    };
    client->EditSelection();
  }
  edit = [&](ImageSelection&, std::uint32_t&) { return client.reset(), true; };
  EXPECT_EQ(client->EditSelection(), 0);
}

}  // namespace
}  // namespace coverage
