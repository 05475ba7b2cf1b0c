#include <gtest/gtest.h>

#include "platform/rc/resource_source.h"

namespace rc {
namespace {

using Reader = void (*)(std::string_view, const std::string&, Resources*);

TEST(ResourceCompiler, MistakesAreNamedWithTheirPlace) {
  const struct {
    Reader read;
    const char *text, *error;
  } rows[] = {
      {ReadStrings, "\n# x\n7 kA", "f:3: the text is missing"},
      {ReadStrings, "7 kA \"open", "f:1: the text has no closing double quote"},
      {ReadStrings, "7 kA \"a\\x\"", "f:1: unknown escape in a text; known are \\n, \\t, \\\" and \\\\"},
      {ReadStrings, "7 kA b", "f:1: the text must stand in double quotes"},
      {ReadStrings, "70000 kA \"b\"", "f:1: the identifier is above 65535: 70000"},
      {ReadStrings, "seven kA \"b\"", "f:1: the identifier is not a number: seven"},
      {ReadStrings, "7 k-A \"b\"", "f:1: a name is a \"k\" and letters and digits: k-A"},
      {ReadStrings, "7 kA \"b\" c", "f:1: too much on the line, from \"c\" on"},
      {ReadDialogs, "  label 1 0 0 1 1 \"\"", "f:1: a control without a dialog"},
      {ReadDialogs, "dialog 1 2 3 \"t\"\n  knob 1 0 0 1 1 \"\"", "f:2: unknown kind of control knob"},
      {ReadDialogs, "dialog 1 2 3 \"t\"\n  radio 1 0 0 1 1 \"\" radios=16", "f:2: unknown flag radios=16"},
      {ReadMenus, "menu 1\n    command 2 \"a\"", "f:2: the indent fits no item above"},
      {ReadMenus, "menu 1\n  command 2 \"a\"\n    command 3 \"b\"", "f:3: the indent fits no item above"},
      {ReadAccelerators, "accelerators 1\n  Ctrl+Ctrl+O 2", "f:2: a modifier stands twice"},
      {ReadAccelerators, "accelerators 1\n  Ctrl+F13 2",
       "f:2: unknown key F13; known are A to Z, 0 to 9 and F1 to F12"},
      {ReadToolbars, "toolbar 1 version 1 width 16", "f:1: \"height\" is missing"},
      {ReadToolbars, "toolbar 1 version 1 width 16 height 15\n  0", "f:2: neither a command nor \"-\": 0"},
      {ReadBitmaps, "colour . 0\nimage a 2 1\n  ...", "f:3: the row has 3 pixels, not 2"},
      {ReadBitmaps, "colour . 0\nimage a 2 1\n  .x", "f:3: no colour is named x"},
      {ReadBitmaps, "colour . 0\nimage a 1 2\n  .\nbitmap 5 a", "f:4: the image a has too few rows"},
      {ReadBitmaps, "bitmap 5 a", "f:1: no image is named a"},
  };
  for (const auto& row : rows) {
    Resources resources;
    try {
      row.read(row.text, "f", &resources);
      ADD_FAILURE() << "taken: " << row.text;
    } catch (const SourceError& error) {
      EXPECT_EQ(std::string(error.what()), row.error) << row.text;
    }
  }
}

TEST(ResourceCompiler, IdentifiersStandOnce) {
  const struct {
    Reader read;
    const char *text, *error;
  } rows[] = {
      {ReadStrings, "7 kA \"a\"\n7 kB \"b\"", "string 7 stands twice"},
      {ReadStrings, "7 kA \"a\"\n8 kA \"b\"", "the name kA stands twice"},
      {ReadMenus, "menu 1\nmenu 1", "menu 1 stands twice"},
      {ReadDialogs, "dialog 1 2 3 \"\"\n  label 4 0 0 1 1 \"\"\n  edit 4 0 0 1 1 \"\"",
       "dialog 1 has the control 4 twice"},
  };
  for (const auto& row : rows) {
    Resources resources;
    row.read(row.text, "f", &resources);
    try {
      Finish(&resources);
      ADD_FAILURE() << "taken: " << row.text;
    } catch (const SourceError& error) {
      EXPECT_EQ(std::string(error.what()), row.error);
    }
  }
}

TEST(ResourceCompiler, TextsSurviveAsLiterals) {
  Resources resources;
  ReadStrings("7 kA \"a\\n\\\"\\\\\\t?\?/1\xC3\xA9\"", "f", &resources);
  EXPECT_EQ(resources.strings.at(0).text, "a\n\"\\\t?\?/1\xC3\xA9");
  EXPECT_NE(WriteData(resources, "n").find("{7, \"a\\012\\\"\\\\\\011\\077\\077/1\\303\\251\"}"),
            std::string::npos);
  EXPECT_NE(WriteIds(resources, "n::s").find("inline constexpr std::uint32_t kA = 7;"), std::string::npos);
}

}  // namespace
}  // namespace rc
