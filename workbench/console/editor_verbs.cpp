#include "platform/paths.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "workbench/console/console.h"
#include "workbench/services/program_services.h"

namespace workbench {
namespace {

constexpr std::uint64_t kMostLines = 1'000'000;

std::shared_ptr<const Debuggee> NeedDebuggee(Console& console) {
  auto held = console.ide().Debugger().Current();
  if (!held) throw VerbError("no program is loaded; program load FILE loads one");
  return held;
}

/// Path under which the program knows a source file.
std::string NeedSource(const Program& program, const std::string& file) {
  std::string found = program.FindSourceFile(NativeSourcePath(file));
  if (found.empty()) throw VerbError("the program has no source file " + file + ", or several");
  return found;
}

/// Columns of the source editors, or of the disassembly.
std::vector<const Columns::Column*> ColumnsOf(Console& console, bool assembler) {
  std::vector<const Columns::Column*> columns;
  for (const auto* column : console.ide().EditorColumns().Shown()) {
    if ((column->kind == OpenFiles::kDisassemblyKind) == assembler) columns.push_back(column);
  }
  return columns;
}

std::string MarkOf(const Columns::Column& column, const std::string& file, std::uint32_t line) {
  platform::WideOut text;
  std::int32_t width = 0;
  const platform::Wide name(file);
  if (column.client->GetLineText(text.put(), &width, name.get(), column.id, line) != qal::kOk) return {};
  return text.str();
}

/// Opens an editor for a file unless one shows it. Gives the number of its lines now.
std::uint32_t OpenedLines(Console& console, const std::string& file) {
  if (!console.ide().OpenEditor(file)) throw VerbError("the source file cannot be read");
  return console.ide().Editors().LineCount(file);
}

/// The component draws the marks of the disassembly as pictures; a console shows what each stands for.
constexpr const char* kPictures[] = {"", "T", "F", "T/F"};

/// Fetches the pictures, so that the client knows their numbers here.
void FetchPictures(const std::vector<const Columns::Column*>& columns) {
  for (const auto* column : columns) {
    for (std::int32_t index = 1; index <= 3; ++index) {
      platform::OwnedVariant image;
      platform::OwnedVariant mask;
      std::uint32_t size = 0;
      column->client->GetColumnImage(index, static_cast<std::uint32_t>(index), column->id, image.put(),
                                     mask.put(), &size);
    }
  }
}

std::string PictureOf(const Columns::Column& column, const std::string& file, std::uint32_t address) {
  std::uint32_t bits = 0;
  const platform::Wide name(file);
  if (column.client->GetLineImageMask(address, name.get(), column.id, &bits) != qal::kOk) return {};
  for (int index = 1; index <= 3; ++index) {
    if (bits == std::uint32_t{1} << index) return kPictures[index];
  }
  return {};
}

void OnSource(Console& console, Words& words) {
  const auto held = NeedDebuggee(console);
  const Program& program = *held->program;
  const std::string native = NeedSource(program, words.Take("the source file"));
  const std::string file = ProductSourcePath(native);
  const std::uint32_t count = OpenedLines(console, file);
  std::uint64_t from = 1;
  std::uint64_t to = count;
  if (!words.Empty()) {
    from = words.TakeNumber("the first line", kMostLines);
    to = words.TakeNumber("the last line", kMostLines);
  }
  words.End();
  if (from == 0 || from > to) throw VerbError("the lines are out of order");
  to = std::min<std::uint64_t>(to, count);
  const auto columns = ColumnsOf(console, false);
  for (auto line = static_cast<std::uint32_t>(from); line <= to; ++line) {
    std::string shown = platform::Format("%5u ", line);
    for (const auto* column : columns)
      shown += platform::Format(" %-4s", MarkOf(*column, file, line).c_str());
    shown += " " + console.ide().Editors().LineText(file, line).value_or(std::string());
    while (shown.back() == ' ') shown.pop_back();
    console.Print(shown);
  }
}

void OnDisassemble(Console& console, Words& words) {
  const auto held = NeedDebuggee(console);
  const std::string place = words.Take("the address");
  std::uint64_t count = 16;
  if (!words.Empty()) count = words.TakeNumber("the number of instructions", kMostLines);
  words.End();
  std::uint32_t address = console.AddressOf(place);
  const auto columns = ColumnsOf(console, true);
  FetchPictures(columns);
  for (; count > 0; --count) {
    const auto instruction = held->disassembler->At(address);
    if (!instruction) throw VerbError(platform::Format("there is no code at %08x", address));
    const auto line = held->program->LineOf(address);
    const std::string file = line ? ProductSourcePath(line->file) : std::string();
    std::string marks;
    for (const auto* column : columns)
      marks += platform::Format(" %-3s", PictureOf(*column, file, address).c_str());
    console.Print(instruction->AddressText() + " " + marks + " " + instruction->CodeText());
    if (address > 0xFFFFFFFFu - instruction->size) return;
    address += instruction->size;
  }
}

void OnEdit(Console& console, Words& words) {
  OpenFiles& editors = console.ide().Editors();
  if (words.Empty()) {
    for (const std::string& file : editors.Files()) console.Print(console.ShownFile(file));
    return console.Print(Counted(editors.Files().size(), "editor"));
  }
  const auto held = NeedDebuggee(console);
  const std::string file = ProductSourcePath(NeedSource(*held->program, words.Take("the source file")));
  const std::string what = words.Take("insert, delete or close");
  if (SameWord(what, "close")) {
    words.End();
    if (!editors.Close(file)) throw VerbError("no editor shows the file; source FILE opens one");
    return;
  }
  const bool insert = SameWord(what, "insert");
  if (!insert && !SameWord(what, "delete"))
    throw VerbError("edit " + what + " is not known: insert, delete or close");
  const auto line = static_cast<std::uint32_t>(words.TakeNumber("the line", kMostLines));
  const auto count = static_cast<std::uint32_t>(words.TakeNumber("the number of lines", kMostLines));
  words.End();
  const std::uint32_t lines = OpenedLines(console, file);
  if (!(insert ? editors.Insert(file, line, count) : editors.Delete(file, line, count)))
    throw VerbError("the editor has " + Counted(lines, "line"));
  console.Print(Counted(count, "line") + (insert ? " inserted at " : " deleted at ") + std::to_string(line));
}

constexpr Verb kVerbs[] = {
    {"source", "FILE [FROM TO]", "Opens a source file in an editor and shows its lines with their marks.",
     OnSource},
    {"disassemble", "ADDRESS [COUNT]", "Shows instructions with the columns of the disassembly.",
     OnDisassemble},
    {"edit", "FILE insert|delete LINE COUNT\nFILE close\n",
     "Changes the lines in an editor, or closes it; alone it lists the editors.", OnEdit},
};

}  // namespace

std::span<const Verb> EditorVerbs() { return kVerbs; }

}  // namespace workbench
