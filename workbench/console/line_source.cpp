#include "workbench/console/line_source.h"

#include <histedit.h>

#include <stdexcept>

namespace workbench {
namespace {

constexpr std::size_t kLongestLine = 64 * 1024;
constexpr int kHistoryLines = 1000;

class Script final : public LineSource {
 public:
  Script(std::vector<std::string> lines, std::unique_ptr<std::istream> stream)
      : lines_(lines.begin(), lines.end()), stream_(std::move(stream)) {}

  std::optional<std::string> Next(const std::string&) override {
    if (!lines_.empty()) {
      std::string line = std::move(lines_.front());
      lines_.pop_front();
      return line;
    }
    if (!stream_) return std::nullopt;
    ++number_;
    std::string line;
    for (int c = stream_->get(); c != EOF; c = stream_->get()) {
      if (c == '\n') return Trimmed(std::move(line));
      if (line.size() >= kLongestLine) {
        throw std::runtime_error("line " + std::to_string(number_) + " of the script is longer than 64 KiB");
      }
      line += static_cast<char>(c);
    }
    if (line.empty()) return std::nullopt;
    return Trimmed(std::move(line));
  }

  bool Interactive() const override { return false; }

 private:
  static std::string Trimmed(std::string line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
      line.pop_back();
    return line;
  }

  std::deque<std::string> lines_;
  std::unique_ptr<std::istream> stream_;
  std::size_t number_ = 0;
};

class Editor final : public LineSource {
 public:
  explicit Editor(const std::string& historyFile) : historyFile_(historyFile) {
    editor_ = el_init("qal-workbench", stdin, stdout, stderr);
    history_ = history_init();
    if (!editor_ || !history_) throw std::runtime_error("the terminal cannot be used for line editing");
    HistEvent event;
    history(history_, &event, H_SETSIZE, kHistoryLines);
    history(history_, &event, H_SETUNIQUE, 1);
    if (!historyFile_.empty()) history(history_, &event, H_LOAD, historyFile_.c_str());
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(
        editor_, EL_PROMPT, +[](EditLine* editor) {
          void* self = nullptr;
          el_get(editor, EL_CLIENTDATA, &self);
          return const_cast<char*>(static_cast<Editor*>(self)->prompt_.c_str());
        });
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_SIGNAL, 1);
    el_set(editor_, EL_HIST, history, history_);
    el_source(editor_, nullptr);
  }

  ~Editor() override {
    if (history_) {
      HistEvent event;
      if (!historyFile_.empty()) history(history_, &event, H_SAVE, historyFile_.c_str());
      history_end(history_);
    }
    if (editor_) el_end(editor_);
  }

  std::optional<std::string> Next(const std::string& prompt) override {
    prompt_ = prompt;
    int count = 0;
    const char* text = el_gets(editor_, &count);
    if (!text || count <= 0) return std::nullopt;
    std::string line(text, static_cast<std::size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    if (!line.empty()) {
      HistEvent event;
      history(history_, &event, H_ENTER, line.c_str());
    }
    return line;
  }

  bool Interactive() const override { return true; }

 private:
  std::string historyFile_;
  std::string prompt_;
  EditLine* editor_ = nullptr;
  History* history_ = nullptr;
};

}  // namespace

std::unique_ptr<LineSource> ScriptLines(std::vector<std::string> lines,
                                        std::unique_ptr<std::istream> stream) {
  return std::make_unique<Script>(std::move(lines), std::move(stream));
}

std::unique_ptr<LineSource> EditedLines(const std::string& historyFile) {
  return std::make_unique<Editor>(historyFile);
}

}  // namespace workbench
