#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/message_box.h"
#include "platform/variant.h"

namespace platform {
namespace {

TEST(Variants, ListsCrossAsArraysOfVariants) {
  const std::vector<std::uint32_t> ids{32770, 0xFFFFFFFF, 0};
  const OwnedVariant list(IdListVariant(ids));
  ASSERT_EQ(list.get()->tag, 0x2017);
  ASSERT_EQ(list.get()->array->count, 3u);
  EXPECT_EQ(list.get()->array->elements[1].tag, 0x17);
  EXPECT_EQ(IdListOf(list.get()), ids);
  EXPECT_EQ(TextListOf(list.get()), std::nullopt);

  const std::vector<std::uint8_t> bytes{0, 255, 7};
  const OwnedVariant image(BytesVariant(bytes));
  EXPECT_EQ(image.get()->tag, 0x2011);
  EXPECT_EQ(image.get()->array->elements[1].tag, 0x11);
  EXPECT_EQ(BytesOf(image.get()), bytes);

  const std::vector<std::string> texts{"Text", "", "表"};
  const OwnedVariant categories(TextListVariant(texts));
  EXPECT_EQ(categories.get()->tag, 0x2008);
  EXPECT_EQ(TextListOf(categories.get()), texts);
}

TEST(Variants, EmptyListsAreArraysAndAbsentOnesAreNot) {
  const OwnedVariant empty(IdListVariant({}));
  EXPECT_EQ(IdListOf(empty.get()), std::vector<std::uint32_t>{});
  const OwnedVariant absent;
  EXPECT_EQ(absent.get()->tag, 0);
  EXPECT_EQ(IdListOf(absent.get()), std::nullopt);
  EXPECT_EQ(IdListOf(nullptr), std::nullopt);
  EXPECT_EQ(TextOf(absent.get()), std::nullopt);
}

TEST(Variants, ElementsOfAnotherKindAreReadAsNothing) {
  OwnedVariant list(IdListVariant(std::vector<std::uint32_t>{1, 2}));
  list.get()->array->elements[0] = TextVariant("x");
  EXPECT_EQ(IdListOf(list.get()), (std::vector<std::uint32_t>{0, 2}));
}

TEST(Variants, BareArraysOfTexts) {
  const std::vector<std::string> names{"cvr", "cv"};
  qal::VariantArray* array = NewTextArray(names);
  EXPECT_EQ(TextsOf(array), names);
  qal::FreeVariantArray(array);
  EXPECT_EQ(TextsOf(nullptr), std::vector<std::string>{});
}

TEST(Clocks, TheInstalledClockRulesTimersAndTexts) {
  ManualClock manual(86400 * 365);
  ASSERT_EQ(InstallClock(&manual), nullptr);
  const auto before = CurrentClock().Now();
  const std::string year = FormatLocalTime("%Y");
  manual.Advance(std::chrono::hours(24 * 366));
  EXPECT_EQ(CurrentClock().Now() - before, std::chrono::hours(24 * 366));
  EXPECT_NE(FormatLocalTime("%Y"), year);
  EXPECT_EQ(InstallClock(nullptr), &manual);
  EXPECT_NE(CurrentClock().Calendar(), manual.Calendar());
}

struct Scripted final : MessageBoxPresenter {
  Answer ShowMessageBox(const MessageBoxRequest& request) override {
    shown += request.caption + "/" + request.text + "/" + NameOf(request.icon) + "/" +
             NameOf(request.buttons) + "\n";
    return answer;
  }
  std::string shown;
  Answer answer = Answer::kOk;
};

TEST(MessageBoxes, WithoutAPresenterTheAnswerIsCautious) {
  EXPECT_EQ(ShowMessageBox("x"), Answer::kOk);
  EXPECT_EQ(ShowMessageBox("x", Icon::kNone, Buttons::kOkCancel), Answer::kCancel);
  EXPECT_EQ(ShowMessageBox("x", Icon::kNone, Buttons::kYesNo), Answer::kNo);
  EXPECT_EQ(ShowMessageBox("x", Icon::kNone, Buttons::kYesNoCancel), Answer::kCancel);
}

TEST(MessageBoxes, ThePresenterAnswersWithTheButtonsThatAreThere) {
  Scripted presenter;
  ASSERT_EQ(InstallMessageBoxPresenter(&presenter), nullptr);
  SetMessageBoxCaption("QAL");
  presenter.answer = Answer::kYes;
  EXPECT_EQ(ShowMessageBox("Save?", Icon::kQuestion, Buttons::kYesNo), Answer::kYes);
  EXPECT_EQ(ShowMessageBox("Create?", Icon::kExclamation, Buttons::kOkCancel), Answer::kCancel)
      << "has no Yes";
  EXPECT_EQ(presenter.shown, "QAL/Save?/question/yes-no\nQAL/Create?/exclamation/ok-cancel\n");
  SetMessageBoxCaption("");
  EXPECT_EQ(InstallMessageBoxPresenter(nullptr), &presenter);
}

}  // namespace
}  // namespace platform
