#include "dialogs/placeholder_button.h"

#include <gtest/gtest.h>

#include "platform/picture.h"
#include "platform/text_presenter.h"
#include "unit/dialogs/dialog_world.h"

namespace coverage {
namespace {

/// A field with the button beside it.
struct Fields {
  explicit Fields(DialogWorld& world) : button(kFilePlaceholders, &world.host) {
    window.Create(0, 0, "", platform::window_style::kVisible, {0, 0, 200, 100});
    edit.Create(window, 1);
    button.Create(window, 2);
    button.SetTarget(&edit);
  }
  ~Fields() { window.Destroy(); }
  platform::Window window;
  platform::Edit edit;
  CUiPlaceholderButtonEB button;
};

TEST(PlaceholderButton, OffersTheFixedOnesAndThenTheCustomOnes) {
  DialogWorld world;
  world.placeholders.application = {"LIB", "Library", "C:\\lib"};
  world.placeholders.project = {"LIB", "Other", "C:\\other", "GEN", "Generated", "C:\\gen"};
  Fields fields(world);
  EXPECT_EQ(platform::Picture(fields.button.BuildMenu()),
            "33411   Configuration directory\n"
            "33412   Project directory\n"
            "33413   Workspace directory\n"
            "33414   QAL installation directory\n"
            "33415   Workspace name\n"
            "33416   Project name\n"
            "33417   Configuration name\n"
            "        --\n"
            "        Custom placeholders\n"
            "  33418   Library\n"
            "  33419   Generated\n");
}

TEST(PlaceholderButton, PutsTheChosenOneInThePlaceOfTheSelection) {
  DialogWorld world;
  Fields fields(world);
  const struct {
    const char* text;
    std::size_t start, end;
    const char* result;
    std::size_t caret;
  } rows[] = {
      {"abc.cov", 0, 3, "$(PROJDIR).cov", 10},
      {"abc.cov", 7, 7, "abc.cov$(PROJDIR)", 17},
      {"", 0, 0, "$(PROJDIR)", 10},
  };
  for (const auto& row : rows) {
    fields.edit.SetText(row.text);
    fields.edit.Select(row.start, row.end);
    world.Act("menu 33412", [&] { fields.button.Press(); });
    EXPECT_EQ(fields.edit.Text(), row.result);
    EXPECT_EQ(fields.edit.SelectionStart(), row.caret);
    EXPECT_TRUE(fields.edit.HasFocus());
  }
}

TEST(PlaceholderButton, LeavesOutWhatTheFieldRefuses) {
  DialogWorld world;
  world.placeholders.application = {"A*B", "Star", "C:\\x"};
  Fields fields(world);
  fields.edit.SetRefusedChars("*?");
  fields.edit.SetText("ab?.cov");  // the program may set what cannot be typed
  fields.edit.Select(1, 2);
  world.Act("menu 33418", [&] { fields.button.Press(); });
  EXPECT_EQ(fields.edit.Text(), "a$(AB)?.cov");
  EXPECT_EQ(fields.edit.SelectionStart(), 1u) << "the caret is not moved";
  EXPECT_EQ(fields.edit.SelectionEnd(), 1u);
}

TEST(PlaceholderButton, OpensItsMenuWhereThePersonPoints) {
  struct Pointing final : platform::TextPresenter {
    Pointing() : TextPresenter({}) {}
    std::optional<std::uint32_t> ChooseFromMenu(const platform::Menu&, platform::Point at,
                                                platform::Window&) override {
      opened = at;
      return std::nullopt;
    }
    platform::Point opened;
  } person;
  const platform::PresenterScope scope(person);
  DialogWorld world;
  Fields fields(world);
  platform::SetCursorPosition({70, 30});
  fields.button.Press();
  EXPECT_EQ(person.opened, (platform::Point{70, 30}));
}

}  // namespace
}  // namespace coverage
