#include "platform/script_presenter.h"

#include <algorithm>
#include <charconv>

#include "platform/dialog.h"
#include "platform/picture.h"
#include "platform/queue.h"
#include "platform/text.h"

namespace platform {

namespace {

constexpr int kLongestWait = 3'600'000;

std::string FirstWord(std::string_view line, std::string_view& rest) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
  rest = line.substr(std::min(end + 1, line.size()));
  return std::string(line.substr(0, end));
}

std::optional<std::uint32_t> NumberOf(std::string_view word) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return number;
}

/// The item that a person names by identifier or by its text.
const MenuItem* FindItem(const Menu& menu, std::string_view name) {
  if (const auto id = NumberOf(name)) return menu.Find(*id);
  for (const MenuItem& item : menu.Items()) {
    if (item.kind == MenuItemKind::kCommand && EqualNoCase(PlainText(item.text), name)) return &item;
    if (!item.popup) continue;
    if (const MenuItem* found = FindItem(*item.popup, name)) return found;
  }
  return nullptr;
}

}  // namespace

void ScriptPresenter::Print(std::string_view text) {
  if (!output_) return;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    output_(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void ScriptPresenter::Fail(std::string_view reason) {
  ++errors_;
  Print("error: " + std::string(reason));
}

std::optional<std::string> ScriptPresenter::NextLine(const std::function<std::string()>& picture) {
  while (next_) {
    auto line = next_();
    if (!line) return std::nullopt;
    std::string_view rest;
    const std::string word = FirstWord(*line, rest);
    if (word.empty()) continue;
    if (word == "dialog") {
      Print(picture());
    } else if (word == "wait") {
      const auto time = NumberOf(Trim(rest));
      if (time && *time <= kLongestWait) {
        PassTime(std::chrono::milliseconds(*time));
        return std::string();
      }
      Fail("milliseconds up to an hour expected, not '" + Trim(rest) + "'");
    } else if (IsDialogWord(word) || !fallback_ || !fallback_(*line)) {
      return line;
    }
  }
  return std::nullopt;
}

void ScriptPresenter::RunModal(Dialog& dialog) {
  PumpPosted();
  if (announce_ && announceDialogs_ && !dialog.Ended()) Print(Picture(dialog));
  while (true) {
    // The dialog may end by itself while the person takes their time.
    if (!dialog.Ended()) PassTime(pace_);
    if (dialog.Ended()) return;
    const auto line = NextLine([&] { return Picture(dialog); });
    if (!line || dialog.Ended()) return;
    if (line->empty()) continue;
    if (const auto error = ActOnDialog(dialog, *line)) Fail(*error);
  }
}

Answer ScriptPresenter::ShowMessageBox(const MessageBoxRequest& request) {
  if (announce_) Print(Picture(request));
  while (const auto line = NextLine([&] { return Picture(request); })) {
    std::string_view rest;
    const std::string word = FirstWord(*line, rest);
    if (word.empty()) continue;
    const std::string given = ToLower(Trim(rest));
    for (const Answer answer : {Answer::kOk, Answer::kCancel, Answer::kYes, Answer::kNo}) {
      if (word == "answer" && given == NameOf(answer) && Offers(request.buttons, answer)) return answer;
    }
    Fail(word == "answer" ? "the message box has no button '" + given + "'"
                          : "the message box waits for: answer BUTTON");
  }
  return CautiousAnswer(request.buttons);
}

std::optional<std::string> ScriptPresenter::AskFile(const FileDialogRequest& request) {
  if (announce_) Print(Picture(request));
  while (const auto line = NextLine([&] { return Picture(request); })) {
    std::string_view rest;
    const std::string word = FirstWord(*line, rest);
    const std::string path = Trim(rest);
    if (word.empty()) continue;
    if (word == "file" && path == "cancel") return std::nullopt;
    if (word == "file" && !path.empty()) return path;
    Fail("the file dialog waits for: file PATH, or file cancel");
  }
  return std::nullopt;
}

std::optional<std::uint32_t> ScriptPresenter::ChooseFromMenu(const Menu& menu, Point /*at*/,
                                                             Window& /*owner*/) {
  if (announce_) Print(Picture(menu));
  while (const auto line = NextLine([&] { return Picture(menu); })) {
    std::string_view rest;
    const std::string word = FirstWord(*line, rest);
    const std::string name = Trim(rest);
    if (word.empty()) continue;
    if (word != "menu" || name.empty()) {
      Fail("the menu waits for: menu ID, or menu cancel");
      continue;
    }
    if (name == "cancel") return std::nullopt;
    const MenuItem* item = FindItem(menu, name);
    if (item && item->enabled) return item->id;
    Fail(item ? "the menu's command " + name + " is disabled" : "the menu has no command '" + name + "'");
  }
  return std::nullopt;
}

}  // namespace platform
