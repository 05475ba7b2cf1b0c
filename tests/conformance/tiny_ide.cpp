#include "tiny_ide.h"

#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <stdexcept>

namespace stranger {

namespace {

TinyIde* current = nullptr;

constexpr char kSource[] = "\\src\\main.c";

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%x", value);
  return text;
}
std::string Number(std::int64_t value) { return std::to_string(value); }

std::uint32_t LengthAt(std::uint32_t address) {
  if (address < 0x1000 || address > 0x10FF || address % 2 || address == 0x100A) return 0;
  return address == 0x1008 ? 4 : 2;
}

/// Gives a text out and answers success.
Result Give(char16_t** out, const std::string& text) {
  *out = NewText(text);
  return kOk;
}

struct Function {
  const char16_t* name;
  std::uint32_t start;
  std::uint32_t end;
};
const Function kFunctions[] = {{u"first", 0x1000, 0x101F}, {u"second", 0x1020, 0x103F}};

struct Instruction {
  char16_t* addressText;
  std::uint32_t reserved;
  std::uint32_t length;
  char16_t* lastText;
};

}  // namespace

TinyIde& TinyIde::Current() { return *current; }

TinyIde::TinyIde() {
  current = this;
  module_ = dlopen(QAL_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
  if (!module_) throw std::runtime_error(dlerror());
  BuildHost();
  BuildCoverage();
  BuildProgram();
  BuildProject();
  BuildColumns();
  BuildRest();
}

TinyIde::~TinyIde() {
  dlclose(module_);
  current = nullptr;
}

void* TinyIde::Export(const char* name) const { return dlsym(module_, name); }

Result TinyIde::LibraryRegister2(void* registrar) const {
  return reinterpret_cast<Result (*)(void*)>(Export("LibraryRegister2"))(registrar);
}
Result TinyIde::CreateInstance(void* key) const {
  return reinterpret_cast<Result (*)(void*)>(Export("CreateInstance"))(key);
}
Result TinyIde::DestroyInstance(void* key) const {
  return reinterpret_cast<Result (*)(void*)>(Export("DestroyInstance"))(key);
}
void* TinyIde::QueryInterface2(void* key, const char* id, Result* result) const {
  const Id wanted = MakeId(id);
  void* out = &out;
  const auto query = reinterpret_cast<Result (*)(void*, const Id*, void**)>(Export("QueryInterface2"));
  const Result status = query(key, &wanted, &out);
  if (result) *result = status;
  return out;
}

void* TinyIde::Start(void* key) {
  CreateInstance(key);
  void* component = QueryInterface2(key, "{A8495747-DE13-11D3-8AF5-00AA0026624A}");
  if (Call(component, 4, host(), std::int16_t{-1}) != kOk)
    throw std::runtime_error("the component did not start");
  return component;
}

void TinyIde::Stop(void* key) {
  void* component = QueryInterface2(key, "{A8495747-DE13-11D3-8AF5-00AA0026624A}");
  Call(component, 7, std::int16_t{-1});
  DestroyInstance(key);
}

void TinyIde::TakeAway(const std::string& name) {
  if (offered_.erase(name) == 0) throw std::runtime_error("no service " + name);
}

void* TinyIde::Registered(const char* id, int index) const {
  const Id wanted = MakeId(id);
  for (const auto& [key, object] : registered_) {
    if (key == wanted && index-- == 0) return object;
  }
  return nullptr;
}

void* TinyIde::Command(const std::string& name) const {
  for (int i = 0;; ++i) {
    void* client = Registered("{76FDAC8B-D0C3-4365-BB64-56412E74A430}", i);
    if (!client) return nullptr;
    ValueArray* names = nullptr;
    std::int32_t id = 0;
    Call(client, 6, &names, &id);
    bool found = false;
    for (std::uint32_t k = 0; names && k < names->count; ++k) {
      found = found || Read(static_cast<char16_t*>(names->elements[k].pointer)) == name;
    }
    FreeArray(names);
    if (found) return client;
  }
}

std::string TinyIde::Run(const std::string& line) {
  void* command = Command(line.substr(0, line.find(' ')));
  if (!command) return "no such command";
  {
    const std::lock_guard lock(mutex_);
    written_.clear();
    outputEnded_ = false;
  }
  Out result, prompt;
  std::int16_t more = 0;
  std::uint16_t status = 0;
  const In arguments(line);
  const Result answer = Call(command, 4, arguments.get(), result.put(), prompt.put(), &more, &status,
                             static_cast<void*>(&output_));
  std::unique_lock lock(mutex_);
  if (status == 0xFFFF) {
    if (!ended_.wait_for(lock, std::chrono::seconds(10), [this] { return outputEnded_; }))
      written_ += "(no end)";
  }
  return (answer == kOk        ? "ok: "
          : answer == kFailure ? "failed: "
                               : "status " + Number(answer) + ": ") +
         result.str() + '\n' + written_;
}

void TinyIde::Note(const std::string& line) {
  const std::lock_guard lock(mutex_);
  log_.push_back(line);
}

std::string TinyIde::TakeLog() { return TakeLog({}); }

std::string TinyIde::TakeLog(const std::string& prefix) {
  const std::lock_guard lock(mutex_);
  std::string text;
  for (const auto& line : log_) {
    if (line.starts_with(prefix)) text += line + '\n';
  }
  log_.clear();
  return text;
}

Object& TinyIde::Offer(const char* name, const char* id) {
  Object& object = objects_.emplace_back();
  offered_[name] = {MakeId(id), &object};
  return object;
}

/// What the operations reach of the IDE.
struct Operations {
  static Result Find(const Id* id, void** out) {
    *out = nullptr;
    for (const auto& [name, service] : current->offered_) {
      if (service.first == *id) *out = service.second;
    }
    return *out ? kOk : kNoInterface;
  }
  static Result Register(const Id* id, void* object) {
    current->registered_.emplace_back(*id, object);
    return kOk;
  }
  static Result Forget(const Id* id, void* object) {
    for (auto at = current->registered_.begin(); at != current->registered_.end(); ++at) {
      if (at->first == *id && at->second == object) {
        current->registered_.erase(at);
        return kOk;
      }
    }
    current->Note("forgets what was never registered");
    return kFailure;
  }
  static Result Write(const char16_t* text) {
    const std::lock_guard lock(current->mutex_);
    current->written_ += Read(text);
    return kOk;
  }
  static Result End() {
    const std::lock_guard lock(current->mutex_);
    current->outputEnded_ = true;
    current->ended_.notify_all();
    return kOk;
  }
  static std::uint32_t NextKey() { return ++current->lastKey_; }
  static std::uint32_t NextOption() { return ++current->optionCount_; }
};

void TinyIde::BuildHost() {
  host_.Set(
      0, +[](void*, const Id* id, void** out) { return Operations::Find(id, out); });
  host_.Set(
      9, +[](void*, const Id* id, void** out) { return Operations::Find(id, out); });
  host_.Set(
      10, +[](void*, const Id* id, void* sink) { return Operations::Register(id, sink); });
  host_.Set(
      11, +[](void*, const Id* id, void* provider) { return Operations::Register(id, provider); });
  host_.Set(
      12, +[](void*, const Id* id, void* sink) { return Operations::Forget(id, sink); });
  host_.Set(
      13, +[](void*, const Id* id, void* provider) { return Operations::Forget(id, provider); });
  output_.Set(
      3, +[](void*, const char16_t* line, const char16_t*) { return Operations::Write(line); });
  output_.Set(
      4, +[](void*, const char16_t*) { return Operations::End(); });
}

void TinyIde::BuildCoverage() {
  Object& coverage = Offer("path", "{A428AAA4-ECBF-4699-91F6-C94EC197D854}");
  coverage.Set(
      3, +[](void*, std::uint32_t* count, const std::uint32_t** pairs) -> Result {
        *count = static_cast<std::uint32_t>(current->path.size() / 2);
        *pairs = current->path.data();
        return kOk;
      });
  coverage.Set(
      4, +[](void*, std::uint32_t start, std::uint32_t end) -> Result {
        current->Note("AddRange " + Hex(start) + " " + Hex(end));
        return current->addRangeAnswer;
      });
  coverage.Set(
      5, +[](void*, std::uint32_t start, std::uint32_t end) -> Result {
        current->Note("RemoveRange " + Hex(start) + " " + Hex(end));
        return kOk;
      });
  coverage.Set(
      7, +[](void*, std::int32_t on) -> Result {
        current->Note("SetCollection " + Number(on));
        return kOk;
      });
  Offer("trace", "{BFA8B2C0-E306-11D4-8BBC-444553540000}")
      .Set(
          4, +[](void*, std::uint32_t, std::uint32_t* address) {
            *address = 0x1000;
            return kOk;
          });
  Offer("execution", "{160415CE-14A7-11D6-80FC-00C04F68EAD7}")
      .Set(
          3, +[](void*) { return kOk; });
}

void TinyIde::BuildProgram() {
  Object& source = Offer("source", "{DD4B2D8A-6AF5-45DF-8307-B9F67B48755B}");
  Object& symbols = objects_.emplace_back();
  static void* symbolTable;
  symbolTable = &symbols;
  symbols.Set(
      0, +[](void* self, const Id* id, void** out) -> Result {
        *out = *id == MakeId("{2597F6A3-AED0-45D3-99AC-A9E98467BBBC}") ? self : nullptr;
        return *out ? kOk : kNoInterface;
      });
  symbols.Set(
      3, +[](void*, const char16_t* file, const Function** records, std::uint32_t* count) -> Result {
        const bool known = Read(file) == kSource;
        *records = known ? kFunctions : nullptr;
        *count = known ? 2 : 0;
        return known ? kOk : kFailure;
      });
  source.Set(
      3, +[](void*, std::uint32_t, void** table) {
        *table = symbolTable;
        return kOk;
      });
  source.Set(
      4, +[](void*, std::uint32_t address, char16_t** file, std::uint32_t* line) -> Result {
        if (!LengthAt(address)) return kFailure;
        *line = (address - 0x1000) / 2 + 1;
        return Give(file, kSource);
      });
  source.Set(
      5, +[](void*, const char16_t*, std::uint32_t line, std::uint32_t* address) -> Result {
        *address = 0x1000 + (line - 1) * 2;
        return LengthAt(*address) ? kOk : kFailure;
      });
  source.Set(
      8, +[](void*, const char16_t*, std::uint32_t line, char16_t** text) -> Result {
        return Give(text, "line " + Number(line));
      });
  Offer("address", "{AFFBE6B9-BD14-4950-BBD0-1EC28CC48800}")
      .Set(
          37, +[](void*, std::uint32_t address, std::uint32_t, std::int32_t, std::uint32_t, char16_t** text) {
            return Give(text, address == 0x1000 ? "first" : Hex(address));
          });
  Object& target = Offer("target", "{A8495742-DE13-11D3-8AF5-00AA0026624A}");
  target.Set(
      4,
      +[](void*, std::uint32_t count, const unsigned char* bytes, std::uint32_t address,
          Instruction* out) -> Result {
        const std::uint32_t length = LengthAt(address);
        if (!length || count != 32 || bytes[0] != (address & 0xFF)) return kFailure;
        char text[16];
        std::snprintf(text, sizeof(text), "%08x", address);
        *out = {NewText(text), 0, length, NewText(length == 4 ? "long" : "short")};
        return kOk;
      });
  target.Set(
      5, +[](void*, std::uint16_t* alignment, std::uint16_t* offset) {
        *alignment = 2;
        *offset = 0;
        return kOk;
      });
  Offer("memory", "{A849574A-DE13-11D3-8AF5-00AA0026624A}")
      .Set(
          6, +[](void*, std::uint32_t first, std::uint32_t last, std::uint16_t, unsigned char* buffer) {
            for (std::uint32_t i = 0; i <= last - first; ++i)
              buffer[i] = static_cast<unsigned char>(first + i);
            return kOk;
          });
  Object& expression = Offer("expression", "{A8495743-DE13-11D3-8AF5-00AA0026624A}");
  expression.Set(
      14, +[](void*, const char16_t* text, std::uint32_t radix, std::uint64_t* value) -> Result {
        const std::string narrow = Read(text);
        char* end = nullptr;
        *value = std::strtoull(narrow.c_str(), &end, static_cast<int>(radix));
        return narrow.empty() || *end ? kFailure : kOk;
      });
  Offer("limits", "{8B1C7AA0-2E92-11D5-A5D8-0000E2257DCD}")
      .Set(
          3, +[](void*, std::uint32_t* low, std::uint32_t* high) {
            *low = current->lowest;
            *high = current->highest;
            return kOk;
          });
}

void TinyIde::BuildProject() {
  Object& session = Offer("session", "{80218733-0B17-4A5D-B971-5F783F93036C}");
  session.Set(
      31, +[](void*) -> Result { return current->active ? 1 : 0; });
  session.Set(
      32, +[](void*, char16_t** name) { return Give(name, "another"); });
  for (const auto& [name, id] : {std::pair{"project", "{D2D08F5A-4600-4590-B4C0-0695720D9AE5}"},
                                 std::pair{"workspace", "{A538CBA2-D5B7-11D4-BE81-00C04F794B59}"}}) {
    Object& project = Offer(name, id);
    project.Set(
        10, +[](void*, char16_t** key) { return Give(key, "c"); });
    project.Set(
        11, +[](void*, char16_t** key) { return Give(key, "p"); });
    project.Set(
        12, +[](void*, char16_t** key) { return Give(key, "w"); });
    project.Set(
        19, +[](void*, const char16_t* workspace, const char16_t* projectKey, const char16_t* configuration,
                char16_t** out) {
          return Give(out, "Debug of " + Read(workspace) + Read(projectKey) + Read(configuration));
        });
    project.Set(
        20, +[](void*, const char16_t* workspace, const char16_t* projectKey, char16_t** out) {
          return Give(out, "demo of " + Read(workspace) + Read(projectKey));
        });
    project.Set(
        40, +[](void*, char16_t** out) { return Give(out, "context"); });
    project.Set(
        42, +[](void*, const char16_t* first, const char16_t* second, const char16_t* third, char16_t** out) {
          current->Note("project text " + Read(first) + " " + Read(second) + " " + Read(third));
          return Give(out, "-session-");
        });
  }
  Object& data = Offer("data", "{48FF5DA0-6FFA-11D5-B7CE-00E029352378}");
  data.Set(
      3, +[](void*, const Id* id) {
        current->Note(*id == MakeId("{48FF5DA0-6FFA-11D5-B7CE-00E029352378}") ? "data opened"
                                                                              : "data opened as another");
        return kOk;
      });
  data.Set(
      4, +[](void*) {
        current->Note("data closed");
        return kOk;
      });
  data.Set(
      5, +[](void*, const char16_t* key, const char16_t* value) {
        current->sessionTexts[Read(key)] = Read(value);
        return kOk;
      });
  data.Set(
      6, +[](void*, const char16_t* key, const char16_t* fallback, char16_t** value) {
        const auto found = current->sessionTexts.find(Read(key));
        return Give(value, found == current->sessionTexts.end() ? Read(fallback) : found->second);
      });
  data.Set(
      7, +[](void*, const char16_t* key, std::uint32_t value) {
        current->sessionNumbers[Read(key)] = value;
        return kOk;
      });
  data.Set(
      8, +[](void*, const char16_t* key, std::uint32_t fallback, std::uint32_t* value) {
        const auto found = current->sessionNumbers.find(Read(key));
        *value = found == current->sessionNumbers.end() ? fallback : found->second;
        return kOk;
      });
}

void TinyIde::BuildColumns() {
  Object& operations = objects_.emplace_back();
  Object& refresh = objects_.emplace_back();
  Object& registry = objects_.emplace_back();
  columnTables_[0] = operations.table();
  columnTables_[1] = refresh.table();
  columnTables_[2] = registry.table();
  offered_["columns"] = {MakeId("{2F867FB8-AE23-43A5-906B-4E1426ADA6B9}"), columnTables_};

  operations.Set(
      4, +[](void*, std::uint32_t column) {
        current->Note("UnregisterColumn " + Number(column));
        return kOk;
      });
  operations.Set(
      5, +[](void*, std::uint32_t column) {
        current->Note("ShowColumn " + Number(column));
        return kOk;
      });
  operations.Set(
      6, +[](void*, const char16_t* file, std::uint32_t column, std::uint32_t mode, std::uint32_t state) {
        current->Note("AddFile " + Read(file) + " " + Number(column) + " " + Number(mode) + " " +
                      Number(state));
        return kOk;
      });
  operations.Set(
      7, +[](void*, const char16_t* file, std::uint32_t column) {
        current->Note("RemoveFile " + Read(file) + " " + Number(column));
        return kOk;
      });
  operations.Set(
      8, +[](void*, const char16_t* file, std::uint32_t column, std::uint32_t mode) {
        current->Note("SetMode " + (file ? Read(file) : "all") + " " + Number(column) + " " + Number(mode));
        return kOk;
      });
  operations.Set(
      9, +[](void*, const char16_t* file, std::uint32_t column, std::uint32_t state) {
        current->Note("SetState " + (file ? Read(file) : "all") + " " + Number(column) + " " + Number(state));
        return kOk;
      });
  operations.Set(
      10, +[](void*, const char16_t* file, std::uint32_t column, std::int32_t first, std::int32_t last) {
        current->Note("RefreshFile " + Read(file) + " " + Number(column) + " " + Number(first) + " " +
                      Number(last));
        return kOk;
      });
  operations.Set(
      66, +[](void*, std::uint32_t zero) {
        current->Note("UpdateColumns " + Number(zero));
        return kOk;
      });
  refresh.Set(
      3,
      +[](void*, const char16_t* const* file, std::uint32_t column, std::int32_t first, std::int32_t last) {
        current->Note("RefreshLines " + (file ? Read(*file) : "all") + " " + Number(column) + " " +
                      Number(first) + " " + Number(last));
        return kOk;
      });
  registry.Set(
      4,
      +[](void*, const char16_t* key, void* client, std::uint32_t* column, std::uint32_t id,
          std::uint32_t kind, const char16_t* title, std::uint32_t images, std::int32_t unset,
          std::uint32_t width, std::uint32_t six, std::uint32_t sixteen, std::uint32_t value,
          const Id* identifier) -> Result {
        std::string line = "RegisterColumn " + Read(key) + " '" + Read(title) + "'";
        for (const std::int64_t each :
             {std::int64_t{id}, std::int64_t{kind}, std::int64_t{images}, std::int64_t{unset},
              std::int64_t{width}, std::int64_t{six}, std::int64_t{sixteen}, std::int64_t{value}}) {
          line += " " + Number(each);
        }
        const bool named = *identifier == MakeId("{C52F732D-C509-4FAE-86FC-5CC057968910}");
        current->Note(line + (client && named ? "" : " wrong"));
        *column = static_cast<std::uint32_t>(current->columns.size()) + 11;
        current->columns[Read(key)] = *column;
        return kOk;
      });
  registry.Set(
      5, +[](void*, const char16_t* key, std::uint32_t* column) -> Result {
        const auto found = current->columns.find(Read(key));
        if (found == current->columns.end()) return kFailure;
        *column = found->second;
        return kOk;
      });
  registry.Set(
      6, +[](void*, std::uint32_t column, void* client) {
        current->Note("AttachClient " + Number(column) + (client ? "" : " none"));
        return kOk;
      });

  Object& frame = Offer("frame", "{0C6ED387-4E53-4FE4-B2C5-6D82B38A4046}");
  frame.Set(
      139, +[](void*, Id first, Id second, std::uint32_t column, std::uint32_t* state) -> Result {
        const Id setting = MakeId("{A9D986D2-6596-4C69-B4BA-06F0A36A26FD}");
        const auto found = current->columnStates.find(column);
        if (!(first == setting) || !(second == setting) || found == current->columnStates.end())
          return kFailure;
        *state = found->second;
        return kOk;
      });
  frame.Set(
      140, +[](void*, Id first, Id second, std::uint32_t column, std::uint32_t state) -> Result {
        const Id setting = MakeId("{A9D986D2-6596-4C69-B4BA-06F0A36A26FD}");
        if (!(first == setting) || !(second == setting)) return kFailure;
        current->columnStates[column] = state;
        return kOk;
      });
}

void TinyIde::BuildRest() {
  Object& options = Offer("options", "{A8495753-DE13-11D3-8AF5-00AA0026624A}");
  options.Set(
      3, +[](void*, const Id* category, const char16_t* label, std::int16_t byDefault, Id* option) {
        const bool ours = *category == MakeId("{05F7F2A0-7AE6-11D5-B7CE-00E029352378}");
        *option = {};
        option->bytes[0] = static_cast<unsigned char>(Operations::NextOption());
        current->Note("option " + Read(label) + " " + Number(byDefault) + (ours ? "" : " of another"));
        return kOk;
      });
  options.Set(
      4, +[](void*, const Id* option) {
        current->Note("no option " + Number(option->bytes[0]));
        return kOk;
      });
  Offer("errors", "{90EFE761-0B7C-11D6-8BC2-0004E2013C71}")
      .Set(
          3, +[](void*, Result status, char16_t** text) {
            return Give(text, "error " + Hex(static_cast<std::uint32_t>(status)));
          });
  Object& commands = Offer("commands", "{A27DD119-38A1-11D6-81CD-00C15069EBD8}");
  commands.Set(
      11, +[](void*, const char16_t* name, const char16_t* syntax, std::uint32_t shortForm) {
        current->Note("command " + Read(name) + " '" + Read(syntax) + "' " + Number(shortForm));
        return kOk;
      });
  commands.Set(
      12, +[](void*, const char16_t* name, const char16_t*) {
        current->Note("no command " + Read(name));
        return kOk;
      });
  int version = 0;
  for (const char* id :
       {"{A7157579-B694-4F6F-B01F-9AC41F0D499C}", "{77142A87-2BD6-4D9B-90AC-1304A51BB980}",
        "{DB9960B8-2821-4536-BC23-6375746ADF28}", "{77E9A101-574E-4BBF-86DE-BE89E0B5BCA5}"}) {
    Object& windows = Offer(("windows" + Number(++version)).c_str(), id);
    windows.Set(
        5, +[](void*, std::uintptr_t, std::uint32_t table, std::uint32_t key, const Id*, const Value* ids,
               std::uint32_t*, std::uint32_t*) {
          current->Note("accelerators " + Number(table) + " " + Number(key) + " " + Hex(ids->tag));
          return kOk;
        });
    windows.Set(
        6, +[](void*, std::uint32_t table, std::uint32_t key) {
          current->Note("no accelerators " + Number(table) + " " + Number(key));
          return kOk;
        });
    windows.Set(
        29,
        +[](void*, std::uintptr_t, std::uint32_t menu, std::uint32_t key, const Id* classId, const Value* ids,
            std::uint32_t*, std::uint32_t*, const char16_t*, const char16_t*, std::uint32_t flag) {
          const auto* list = static_cast<const ValueArray*>(ids->pointer);
          std::string line =
              "menu " + Number(menu) + " " + Number(key) + " " + Number(flag) + " " + Hex(ids->tag);
          for (std::uint32_t i = 0; i < list->count; ++i) line += " " + Number(list->elements[i].number);
          const bool ours = *classId == MakeId("{BBE21080-34D9-11D5-B7CE-00E029352378}");
          current->Note(line + (ours ? "" : " of another"));
          return kOk;
        });
    windows.Set(
        33, +[](void*, std::uint32_t menu, std::uint32_t key) {
          current->Note("no menu " + Number(menu) + " " + Number(key));
          return kOk;
        });
    windows.Set(
        44, +[](void*, std::uint32_t* key) {
          *key = Operations::NextKey();
          return kOk;
        });
  }
}

}  // namespace stranger
