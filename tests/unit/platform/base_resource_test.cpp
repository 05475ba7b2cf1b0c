#include <gtest/gtest.h>

#include "platform/module.h"
#include "platform/paths.h"
#include "platform/resources.h"
#include "platform/text.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace platform {
namespace {

namespace strings = coverage::strings;

std::string BinDirectory() {
  static const int here = 0;
  return DirectoryPart(ModulePath(&here).value_or(""));
}

/// The component's resource module as it is built.
struct ResourceModule : testing::Test {
  ResourceModule()
      : module(Module::Load(JoinPath(BinDirectory(), "JepCoverageExtRes.dll"))), scope(module.handle()) {}
  Module module;
  ResourceScope scope;
};

TEST(Modules, WhatIsMissingIsSaid) {
  std::string error;
  EXPECT_FALSE(Module::Load("\\no\\such\\module.dll", &error));
  EXPECT_NE(error, "");
  EXPECT_EQ(FindExport(0, "x"), nullptr);
  EXPECT_EQ(FindExport(0x1234, "x"), nullptr) << "a number that is no module";
  EXPECT_EQ(ModulePath(nullptr), std::nullopt);
}

TEST(Modules, AHandleLivesAsLongAsItsLastHolder) {
  Module first = Module::Load(JoinPath(BinDirectory(), "JepCoverageExtRes.dll"));
  ASSERT_TRUE(first);
  Module second = Module::Load(JoinPath(BinDirectory(), "JEPCOVERAGEEXTRES.DLL"));
  ASSERT_EQ(first.handle(), second.handle()) << "found in whatever case";
  const qal::ModuleHandle handle = first.handle();
  first = Module();
  EXPECT_NE(FindExport(handle, "GetDLLType"), nullptr);
  EXPECT_EQ(FindExport(handle, "GetNothing"), nullptr);
  EXPECT_EQ(second.FindExport(1), nullptr) << "offers nothing by number";
  second = Module();
  EXPECT_EQ(FindExport(handle, "GetDLLType"), nullptr);
}

TEST_F(ResourceModule, DialogsFitTheirFrames) {
  for (const std::uint32_t id : {207u, 9001u, 9002u, 9003u, 9062u, 9063u, 9064u, 2210u, 2222u}) {
    const DialogTemplate* dialog = LoadDialog(id);
    ASSERT_NE(dialog, nullptr) << id;
    int defaults = 0;
    for (std::uint32_t i = 0; i < dialog->controlCount; ++i) {
      const ControlTemplate& control = dialog->controls[i];
      defaults += control.kind == ControlKind::kDefaultButton;
      EXPECT_LE(control.x + control.width, dialog->width) << id << ": " << control.id;
      const bool dropsDown =
          control.kind == ControlKind::kComboBox || control.kind == ControlKind::kDropDownList;
      EXPECT_LE(control.y + (dropsDown ? 12 : control.height), dialog->height) << id << ": " << control.id;
    }
    EXPECT_EQ(defaults, 1) << id;
  }
  const DialogTemplate* saving = LoadDialog(coverage::resource::kDialogSaveCoverageData);
  std::string order;
  for (std::uint32_t i = 0; i < saving->controlCount; ++i) {
    order += std::to_string(saving->controls[i].id) + saving->controls[i].text + " ";
  }
  EXPECT_EQ(std::string(saving->title) + ": " + order,
            "Save Coverage Data: 9011 9031&Yes... 9032&No 9065No &To All 9013Yes To &All... ");
}

constexpr StringResource kOwnTexts[] = {{5, "own five"}, {32788, "own code"}};
constexpr ResourceTable kOwn = {kResourceTableVersion, 2, 0, 0, 0, 0, 0, kOwnTexts};

TEST_F(ResourceModule, TheModuleComesBeforeTheLibrarysOwnTable) {
  const ResourceScope both(ResourceContext{module.handle(), &kOwn});
  EXPECT_EQ(LoadText(32788), "Code");
  EXPECT_EQ(LoadText(5), "own five");
  {
    const ResourceScope without{qal::ModuleHandle{0}};
    EXPECT_EQ(LoadText(32788), "own code");
    EXPECT_EQ(LoadMenu(201), nullptr);
  }
  EXPECT_EQ(LoadText(32788), "Code") << "the scope ended";
}

TEST(Resources, ATableCanStandForAHandle) {
  RegisterResourceTable(77, &kOwn);
  ResourceScope scope(qal::ModuleHandle{77});
  EXPECT_EQ(LoadText(5), "own five");
  RegisterResourceTable(77, nullptr);
  EXPECT_EQ(LoadText(5), std::nullopt);
}

TEST(Resources, TablesOfAnotherVersionAreNotRead) {
  constexpr ResourceTable kLater = {kResourceTableVersion + 1, 2, 0, 0, 0, 0, 0, kOwnTexts};
  RegisterResourceTable(78, &kLater);
  EXPECT_EQ(ResourcesOf(78), nullptr);
  RegisterResourceTable(78, nullptr);
}

}  // namespace
}  // namespace platform
