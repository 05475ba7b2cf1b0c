#include "platform/text_presenter.h"

#include <algorithm>

#include "platform/dialog.h"
#include "platform/picture.h"
#include "platform/text.h"

namespace platform {

namespace {

const char* NameOf(Change what) {
  switch (what) {
    case Change::kText:
      return "text";
    case Change::kVisible:
      return "visible";
    case Change::kEnabled:
      return "enabled";
    case Change::kBounds:
      return "bounds";
    case Change::kCheck:
      return "check";
    case Change::kItems:
      return "items";
    case Change::kSelection:
      return "selection";
    case Change::kContent:
      return "content";
    case Change::kFont:
      return "font";
    case Change::kParent:
      return "parent";
    case Change::kMenu:
      return "menu";
    case Change::kToolbar:
      return "toolbar";
  }
  return "?";
}

std::string NameOf(const Window& window) {
  return window.Id() != 0 ? Format("%u \"%s\"", window.Id(), window.Text().c_str())
                          : "\"" + window.Text() + "\"";
}

}  // namespace

void TextPresenter::Print(std::string_view text) {
  if (!output_) return;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    output_(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void TextPresenter::RunModal(Dialog& dialog) { Print(Picture(dialog)); }

Answer TextPresenter::ShowMessageBox(const MessageBoxRequest& request) {
  Print(Picture(request));
  return CautiousAnswer(request.buttons);
}

std::optional<std::string> TextPresenter::AskFile(const FileDialogRequest& request) {
  Print(Picture(request));
  return std::nullopt;
}

std::optional<std::uint32_t> TextPresenter::ChooseFromMenu(const Menu& menu, Point /*at*/,
                                                           Window& /*owner*/) {
  Print(Picture(menu));
  return std::nullopt;
}

void TextPresenter::WindowCreated(Window& window) {
  if (log_) Print("created " + NameOf(window));
}

void TextPresenter::WindowDestroyed(Window& window) {
  if (log_) Print("destroyed " + NameOf(window));
}

void TextPresenter::WindowChanged(Window& window, Change what) {
  if (log_) Print(std::string(NameOf(what)) + " of " + NameOf(window));
}

void TextPresenter::FocusMoved(Window* now) {
  if (log_) Print(now ? "focus " + NameOf(*now) : "no focus");
}

void TextPresenter::DialogEnded(Dialog& dialog) {
  if (log_) Print(Format("ended %s: %d", NameOf(dialog).c_str(), dialog.Result()));
}

}  // namespace platform
