#include "workbench/console/console.h"

#include <csignal>
#include <new>

#include "platform/paths.h"
#include "platform/queue.h"
#include "platform/text.h"
#include "workbench/services/expression_evaluator.h"

namespace workbench {
namespace {

volatile std::sig_atomic_t interrupted = 0;
struct sigaction actionBefore;

constexpr std::chrono::milliseconds kPatience{100};
/// A person who has pressed Ctrl-C so often wants the command to be left alone.
constexpr int kInterruptsToAbandon = 3;

/// Verbs that change nothing and so may be used while a box or a dialog is open.
constexpr std::string_view kMeanwhile[] = {"help",   "windows",  "show",    "where",    "cat",     "same",
                                           "ranges", "services", "options", "evaluate", "commands"};

/// Command output and texts of boxes come with line ends of their own.
std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string line(text.substr(0, end));
    while (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

}  // namespace

InterruptScope::InterruptScope() {
  interrupted = 0;
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = 1; };
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &actionBefore);
}

InterruptScope::~InterruptScope() { sigaction(SIGINT, &actionBefore, nullptr); }

bool InterruptScope::Taken() {
  if (!interrupted) return false;
  interrupted = 0;
  return true;
}

std::vector<VerbGroup> AllVerbs() {
  return {{"Program", ProgramVerbs()},         {"Debugger", DebuggerVerbs()},
          {"Commands", CommandVerbs()},        {"Windows", WindowVerbs()},
          {"Menus and toolbars", MenuVerbs()}, {"While a dialog or box is open", DialogVerbs()},
          {"Editors", EditorVerbs()},          {"Settings, macros, sessions", SettingVerbs()},
          {"Coverage tests", TestVerbs()},     {"General", GeneralVerbs()}};
}

const Verb* FindVerb(std::string_view name) {
  for (const VerbGroup& group : AllVerbs()) {
    for (const Verb& verb : group.verbs) {
      if (SameWord(verb.name, name)) return &verb;
    }
  }
  return nullptr;
}

Console::Console(LineSource& lines, std::ostream& out, Options options)
    : lines_(lines),
      out_(out),
      options_(options),
      presenter_([this] { return ReadAnswer(); }, [this](std::string_view text) { PrintPicture(text); }),
      presenterScope_(presenter_) {
  presenter_.SetFallback([this](std::string_view line) { return ExecuteMeanwhile(std::string(line)); });
}

void Console::Print(std::string_view text) {
  if (text.empty()) out_ << '\n';
  for (const std::string& line : LinesOf(text)) out_ << line << '\n';
}

void Console::PrintPicture(std::string_view text) {
  Print(ide_ ? platform::ReplaceAll(text, ide_->OpenProject().Directory(), "$(PROJDIR)") : std::string(text));
}

std::string Console::ShownFile(const std::string& file) const {
  const std::string shown = ide_->OpenProject().Shown(file);
  return shown == file ? platform::FilePart(file) : shown;
}

bool Console::StopAsked() { return InterruptScope::Taken(); }

void Console::ShowSource(const std::string& file, std::uint32_t line) {
  ide_->OpenEditor(file);
  Print("editor: " + ShownFile(file) + " line " + std::to_string(line));
}

void Console::ShowAddress(std::uint32_t address) {
  Print(platform::Format("editor: disassembly at %08x", address));
}

std::optional<std::string> Console::ReadLine(const std::string& prompt) {
  out_.flush();
  auto line = lines_.Next(prompt);
  if (line && !lines_.Interactive()) Print(line->empty() ? ">" : "> " + *line);
  return line;
}

std::optional<std::string> Console::ReadAnswer() {
  CountRefusals();
  if (quit_) return std::nullopt;
  auto line = ReadLine("answer> ");
  // Pictures say $(PROJDIR) where files lie, so the answers may.
  if (line && SameWord(Words(*line).Peek(), "file"))
    *line = platform::ReplaceAll(*line, "$(PROJDIR)", ide_->OpenProject().Directory());
  return line;
}

void Console::Fail(const std::string& reason) {
  Print("error: " + reason);
  CountFailure();
}

void Console::CountFailure() {
  ++failures_;
  if (Interactive()) return;
  failed_ = true;
  if (!options_.keepGoing) quit_ = true;
}

void Console::CountRefusals() {
  if (presenter_.Errors() == presenterErrors_) return;
  presenterErrors_ = presenter_.Errors();
  CountFailure();
}

int Console::Run() {
  while (!quit_) {
    std::optional<std::string> line;
    try {
      line = ReadLine(pending_ ? pendingPrompt_ : "> ");
    } catch (const std::exception& error) {
      Fail(error.what());
      failed_ = true;
      break;
    }
    if (!line) break;
    Execute(*line);
  }
  out_.flush();
  return failed_ ? 1 : 0;
}

void Console::Settle() {
  platform::PumpPosted();
  CountRefusals();
}

bool Console::Execute(const std::string& line) {
  const int before = failures_;
  try {
    if (pending_) {
      RunCommand(line);
    } else {
      Words words(line);
      const std::string first = words.Peek();
      if (words.Empty() || (!first.empty() && first[0] == '#')) return true;
      if (ide_->Commands().Find(first)) {
        RunCommand(line);
      } else {
        const Verb* verb = FindVerb(first);
        if (!verb) throw VerbError(first + " is no command and no verb; help lists them");
        words.Take("the verb");
        verb->handler(*this, words);
        if (verb->recorded && ide_->Macro().Recording()) ide_->Macro().RecordLine(platform::Wide(line).get());
      }
    }
    Settle();
  } catch (const std::bad_alloc&) {
    Fail("there is not enough memory");
  } catch (const std::exception& error) {
    Fail(error.what());
  }
  return failures_ == before;
}

void Console::Play(const std::vector<std::string>& lines) {
  if (playing_) throw VerbError("a macro cannot play another one");
  playing_ = true;
  for (const std::string& line : lines) {
    Print("macro: " + line);
    if (!Execute(line) || quit_) break;  // a command that fails is reported, and the rest goes on
  }
  playing_ = false;
}

bool Console::ExecuteMeanwhile(const std::string& line) {
  Words words(line);
  const std::string first = words.Peek();
  if (first.empty() || first[0] == '#') return true;
  for (const std::string_view allowed : kMeanwhile) {
    if (SameWord(first, allowed)) return Execute(line), true;
  }
  if (!FindVerb(first) && !ide_->Commands().Find(first)) return false;
  Fail(first + " has to wait until what is open is closed");
  return true;
}

bool Console::RunCommand(const std::string& line, std::size_t limit) {
  const InterruptScope interrupts;
  auto* client = pending_ ? pending_ : ide_->Commands().Find(Words(line).Peek());
  if (!client) throw VerbError(Words(line).Peek() + " is no command");
  pending_ = nullptr;
  CommandRun run(*client, line);
  std::size_t lines = 0;
  const auto show = [&](const std::string& text) {
    for (const std::string& shown : LinesOf(text)) {
      if (lines++ < limit) Print(shown);
    }
  };
  std::string text;
  while (run.Output().TryRead(text)) show(text);
  for (int chances = kInterruptsToAbandon; run.InBackground() && !run.Output().Ended();) {
    if (run.Output().Read(text, kPatience) == OutputQueue::Result::kLine) show(text);
    if (!InterruptScope::Taken()) continue;
    client->CancelCommand();
    if (--chances == 0) throw VerbError("the command does not end");
  }
  if (lines > limit) Print("... " + Counted(lines - limit, "more line"));
  const auto result = LinesOf(run.ResultText());
  if (run.Failed()) {
    Print(result.empty() ? "failed:" : "failed: " + result[0]);
    for (std::size_t i = 1; i < result.size(); ++i) Print(result[i]);
  } else {
    for (const std::string& shown : result) Print(shown);
  }
  if (run.WantsMore()) {
    pending_ = client;
    pendingPrompt_ = run.Prompt().empty() ? "more> " : run.Prompt();
  }
  return !run.Failed();
}

std::uint32_t Console::AddressOf(const std::string& expression) {
  const auto debuggee = ide_->Debugger().Current();
  const auto symbols = [&](std::string_view name) -> std::optional<std::uint64_t> {
    const Symbol* symbol = debuggee ? debuggee->program->FindSymbol(platform::ToUtf8(name)) : nullptr;
    if (!symbol) return std::nullopt;
    return symbol->address;
  };
  const Evaluation result = Evaluate(expression, 16, symbols);
  if (!result.value) throw VerbError(result.error);
  const auto address = ToAddress(*result.value);
  if (!address) throw VerbError(expression + " is no 32-bit address");
  return *address;
}

}  // namespace workbench
