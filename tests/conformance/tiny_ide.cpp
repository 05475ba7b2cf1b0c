#include "tiny_ide.h"

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>

namespace stranger {

namespace {

TinyIde* current = nullptr;

constexpr char kSource[] = "\\src\\main.c";
using Number = std::uint32_t;
using Text = const char16_t*;

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%x", value);
  return text;
}

std::uint32_t LengthAt(std::uint32_t address) {
  if (address < 0x1000 || address > 0x10FF || address % 2 || address == 0x100A) return 0;
  return address == 0x1008 ? 4 : 2;
}

/// A name as a template argument.
template <std::size_t kSize>
struct Name {
  consteval Name(const char (&from)[kSize]) { std::copy_n(from, kSize, text); }
  char text[kSize];
};

/// An operation that is written down with its arguments and succeeds.
template <Name kName, class... Arguments>
Result Noted(void*, Arguments... arguments) {
  return current->Note(kName.text, arguments...);
}

/// Gives a text out and answers success.
Result Give(char16_t** out, const std::string& text) {
  *out = NewText(text);
  return kOk;
}

template <Name kText>
Result Gives(void*, char16_t** out) {
  return Give(out, kText.text);
}
/// Gives a value out and answers success.
template <class Type>
Result Give(Type* out, std::type_identity_t<Type> value) {
  *out = value;
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

bool IsColumnSetting(const Id& first, const Id& second) {
  const Id setting = MakeId("{A9D986D2-6596-4C69-B4BA-06F0A36A26FD}");
  return first == setting && second == setting;
}

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

void* TinyIde::QueryInterface2(void* key, const char* id, Result* result) const {
  const Id wanted = MakeId(id);
  void* out = &out;
  const Result status = Enter("QueryInterface2", key, &wanted, &out);
  if (result) *result = status;
  return out;
}

void* TinyIde::Start(void* key) {
  Enter("CreateInstance", key);
  void* component = QueryInterface2(key, "{A8495747-DE13-11D3-8AF5-00AA0026624A}");
  if (Call(component, 4, host(), std::int16_t{-1}) != kOk)
    throw std::runtime_error("the component did not start");
  return component;
}

void TinyIde::Stop(void* key) {
  void* component = QueryInterface2(key, "{A8495747-DE13-11D3-8AF5-00AA0026624A}");
  Call(component, 7, std::int16_t{-1});
  Enter("DestroyInstance", key);
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
    const Value* const first = names->elements;
    const bool found = std::any_of(first, first + names->count, [&](const Value& each) {
      return Read(static_cast<char16_t*>(each.pointer)) == name;
    });
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
  const auto ended = [this] { return outputEnded_; };
  if (status == 0xFFFF && !ended_.wait_for(lock, std::chrono::seconds(10), ended)) written_ += "(no end)";
  return (answer == kOk        ? "ok: "
          : answer == kFailure ? "failed: "
                               : "neither: ") +
         result.str() + '\n' + written_;
}

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

void TinyIde::BuildHost() {
  const auto find = [](void*, const Id* id, void** out) {
    *out = nullptr;
    for (const auto& [name, service] : current->offered_) {
      if (service.first == *id) *out = service.second;
    }
    return *out ? kOk : kNoInterface;
  };
  const auto enlist = [](void*, const Id* id, void* object) {
    current->registered_.emplace_back(*id, object);
    return kOk;
  };
  const auto forget = [](void*, const Id* id, void* object) {
    if (std::erase(current->registered_, std::pair{*id, object}) > 0) return kOk;
    return current->Note("forgets what was never registered");
  };
  host_.Set(0, find);
  host_.Set(9, find);
  for (const int slot : {10, 11}) {
    host_.Set(slot, enlist);
    host_.Set(slot + 2, forget);
  }
  output_.Set(3, [](void*, Text line, Text) {
    const std::lock_guard lock(current->mutex_);
    current->written_ += Read(line);
    return kOk;
  });
  output_.Set(4, [](void*, Text) {
    const std::lock_guard lock(current->mutex_);
    current->outputEnded_ = true;
    current->ended_.notify_all();
    return kOk;
  });
}

void TinyIde::BuildCoverage() {
  Object& coverage = Offer("path", "{A428AAA4-ECBF-4699-91F6-C94EC197D854}");
  coverage.Set(3, [](void*, Number* count, const Number** pairs) {
    *count = static_cast<Number>(current->path.size() / 2);
    return Give(pairs, current->path.data());
  });
  coverage.Set(4, [](void*, Number start, Number end) {
    current->Note("AddRange", Hex(start), Hex(end));
    return current->addRangeAnswer;
  });
  coverage.Set(
      5, [](void*, Number start, Number end) { return current->Note("RemoveRange", Hex(start), Hex(end)); });
  coverage.Set(7, Noted<"SetCollection", std::int32_t>);
  Offer("trace", "{BFA8B2C0-E306-11D4-8BBC-444553540000}").Set(4, [](void*, Number, Number* address) {
    return Give(address, 0x1000);
  });
  Offer("execution", "{160415CE-14A7-11D6-80FC-00C04F68EAD7}").Set(3, [](void*) { return kOk; });
}

void TinyIde::BuildProgram() {
  Object& source = Offer("source", "{DD4B2D8A-6AF5-45DF-8307-B9F67B48755B}");
  static void* symbolTable;
  Object& symbols = objects_.emplace_back();
  symbolTable = &symbols;
  symbols.Set(0, [](void* self, const Id* id, void** out) {
    *out = *id == MakeId("{2597F6A3-AED0-45D3-99AC-A9E98467BBBC}") ? self : nullptr;
    return *out ? kOk : kNoInterface;
  });
  symbols.Set(3, [](void*, Text file, const Function** records, Number* count) {
    const bool known = Read(file) == kSource;
    *records = known ? kFunctions : nullptr;
    *count = known ? 2 : 0;
    return known ? kOk : kFailure;
  });
  source.Set(3, [](void*, Number, void** table) { return Give(table, symbolTable); });
  source.Set(4, [](void*, Number address, char16_t** file, Number* line) {
    if (!LengthAt(address)) return kFailure;
    *line = (address - 0x1000) / 2 + 1;
    return Give(file, kSource);
  });
  source.Set(5, [](void*, Text, Number line, Number* address) {
    *address = 0x1000 + (line - 1) * 2;
    return LengthAt(*address) ? kOk : kFailure;
  });
  source.Set(8, [](void*, Text, Number line, char16_t** text) {
    return Give(text, "line " + std::to_string(line));
  });
  Offer("address", "{AFFBE6B9-BD14-4950-BBD0-1EC28CC48800}")
      .Set(37, [](void*, Number address, Number, std::int32_t, Number, char16_t** text) {
        return Give(text, address == 0x1000 ? "first" : Hex(address));
      });
  Object& target = Offer("target", "{A8495742-DE13-11D3-8AF5-00AA0026624A}");
  target.Set(4, [](void*, Number count, const unsigned char* bytes, Number address, Instruction* out) {
    const Number length = LengthAt(address);
    if (!length || count != 32 || bytes[0] != (address & 0xFF)) return kFailure;
    return Give(
        out, {NewText("0000" + Hex(address).substr(2)), 0, length, NewText(length == 4 ? "long" : "short")});
  });
  target.Set(5, [](void*, std::uint16_t* alignment, std::uint16_t* offset) {
    *offset = 0;
    return Give(alignment, 2);
  });
  Offer("memory", "{A849574A-DE13-11D3-8AF5-00AA0026624A}")
      .Set(6, [](void*, Number first, Number last, std::uint16_t, unsigned char* buffer) {
        for (Number i = 0; i <= last - first; ++i) buffer[i] = static_cast<unsigned char>(first + i);
        return kOk;
      });
  Offer("expression", "{A8495743-DE13-11D3-8AF5-00AA0026624A}")
      .Set(14, [](void*, Text text, Number radix, std::uint64_t* value) {
        const std::string narrow = Read(text);
        char* end = nullptr;
        *value = std::strtoull(narrow.c_str(), &end, static_cast<int>(radix));
        return narrow.empty() || *end ? kFailure : kOk;
      });
  Offer("limits", "{8B1C7AA0-2E92-11D5-A5D8-0000E2257DCD}").Set(3, [](void*, Number* low, Number* high) {
    *low = current->lowest;
    return Give(high, current->highest);
  });
}

void TinyIde::BuildProject() {
  Object& session = Offer("session", "{80218733-0B17-4A5D-B971-5F783F93036C}");
  session.Set(31, [](void*) -> Result { return current->active ? 1 : 0; });
  session.Set(32, Gives<"another">);
  for (const auto& [name, id] : {std::pair{"project", "{D2D08F5A-4600-4590-B4C0-0695720D9AE5}"},
                                 std::pair{"workspace", "{A538CBA2-D5B7-11D4-BE81-00C04F794B59}"}}) {
    Object& project = Offer(name, id);
    project.Set(10, Gives<"c">);
    project.Set(11, Gives<"p">);
    project.Set(12, Gives<"w">);
    project.Set(19, [](void*, Text workspace, Text key, Text configuration, char16_t** out) {
      return Give(out, "Debug of " + Read(workspace) + Read(key) + Read(configuration));
    });
    project.Set(20, [](void*, Text workspace, Text key, char16_t** out) {
      return Give(out, "demo of " + Read(workspace) + Read(key));
    });
    project.Set(40, Gives<"context">);
    project.Set(42, [](void*, Text first, Text second, Text third, char16_t** out) {
      current->Note("project text", first, second, third);
      return Give(out, "-session-");
    });
  }
  Object& data = Offer("data", "{48FF5DA0-6FFA-11D5-B7CE-00E029352378}");
  data.Set(3, [](void*, const Id* id) {
    const bool ours = *id == MakeId("{48FF5DA0-6FFA-11D5-B7CE-00E029352378}");
    return current->Note(ours ? "data opened" : "data opened as another");
  });
  data.Set(4, Noted<"data closed">);
  data.Set(5, [](void*, Text key, Text value) {
    current->sessionTexts[Read(key)] = Read(value);
    return kOk;
  });
  data.Set(6, [](void*, Text key, Text fallback, char16_t** value) {
    const auto found = current->sessionTexts.find(Read(key));
    return Give(value, found == current->sessionTexts.end() ? Read(fallback) : found->second);
  });
  data.Set(7, [](void*, Text key, Number value) {
    current->sessionNumbers[Read(key)] = value;
    return kOk;
  });
  data.Set(8, [](void*, Text key, Number fallback, Number* value) {
    const auto found = current->sessionNumbers.find(Read(key));
    return Give(value, found == current->sessionNumbers.end() ? fallback : found->second);
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

  operations.Set(4, Noted<"UnregisterColumn", Number>);
  operations.Set(5, Noted<"ShowColumn", Number>);
  operations.Set(6, Noted<"AddFile", Text, Number, Number, Number>);
  operations.Set(7, Noted<"RemoveFile", Text, Number>);
  operations.Set(8, Noted<"SetMode", Text, Number, Number>);
  operations.Set(9, Noted<"SetState", Text, Number, Number>);
  operations.Set(10, Noted<"RefreshFile", Text, Number, std::int32_t, std::int32_t>);
  operations.Set(66, Noted<"UpdateColumns", Number>);
  refresh.Set(3, Noted<"RefreshLines", const Text*, Number, std::int32_t, std::int32_t>);
  registry.Set(4, [](void*, Text key, void* client, Number* column, Number id, Number kind, Text title,
                     Number images, std::int32_t unset, Number width, Number six, Number sixteen,
                     Number value, const Id* identifier) {
    const bool named = *identifier == MakeId("{C52F732D-C509-4FAE-86FC-5CC057968910}");
    current->Note("RegisterColumn", key, "'" + Read(title) + "'", id, kind, images, unset, width, six,
                  sixteen, std::to_string(value) + (client && named ? "" : " wrong"));
    *column = static_cast<Number>(current->columns.size()) + 11;
    current->columns[Read(key)] = *column;
    return kOk;
  });
  registry.Set(5, [](void*, Text key, Number* column) {
    const auto found = current->columns.find(Read(key));
    return found == current->columns.end() ? kFailure : Give(column, found->second);
  });
  registry.Set(6, [](void*, Number column, void* client) {
    return current->Note("AttachClient", std::to_string(column) + (client ? "" : " none"));
  });

  Object& frame = Offer("frame", "{0C6ED387-4E53-4FE4-B2C5-6D82B38A4046}");
  frame.Set(139, [](void*, Id first, Id second, Number column, Number* state) {
    const auto found = current->columnStates.find(column);
    if (!IsColumnSetting(first, second) || found == current->columnStates.end()) return kFailure;
    return Give(state, found->second);
  });
  frame.Set(140, [](void*, Id first, Id second, Number column, Number state) {
    if (!IsColumnSetting(first, second)) return kFailure;
    return Give(&current->columnStates[column], state);
  });
}

void TinyIde::BuildRest() {
  Object& options = Offer("options", "{A8495753-DE13-11D3-8AF5-00AA0026624A}");
  options.Set(3, [](void*, const Id* category, Text label, std::int16_t byDefault, Id* option) {
    const bool ours = *category == MakeId("{05F7F2A0-7AE6-11D5-B7CE-00E029352378}");
    *option = {};
    option->bytes[0] = static_cast<unsigned char>(++current->optionCount_);
    return current->Note(ours ? "option" : "option of another", label, byDefault);
  });
  options.Set(4, [](void*, const Id* option) { return current->Note("no option", option->bytes[0]); });
  Offer("errors", "{90EFE761-0B7C-11D6-8BC2-0004E2013C71}").Set(3, [](void*, Number status, char16_t** text) {
    return Give(text, "error " + Hex(status));
  });
  Object& commands = Offer("commands", "{A27DD119-38A1-11D6-81CD-00C15069EBD8}");
  commands.Set(11, [](void*, Text name, Text syntax, Number shortForm) {
    return current->Note("command", name, "'" + Read(syntax) + "'", shortForm);
  });
  commands.Set(12, [](void*, Text name, Text) { return current->Note("no command", name); });
  int version = 0;
  for (const char* id :
       {"{A7157579-B694-4F6F-B01F-9AC41F0D499C}", "{77142A87-2BD6-4D9B-90AC-1304A51BB980}",
        "{DB9960B8-2821-4536-BC23-6375746ADF28}", "{77E9A101-574E-4BBF-86DE-BE89E0B5BCA5}"}) {
    Object& windows = Offer(("windows" + std::to_string(++version)).c_str(), id);
    windows.Set(5, [](void*, std::uintptr_t, Number table, Number key, const Id*, const Value* ids, Number*,
                      Number*) { return current->Note("accelerators", table, key, Hex(ids->tag)); });
    windows.Set(6, Noted<"no accelerators", Number, Number>);
    windows.Set(29, [](void*, std::uintptr_t, Number menu, Number key, const Id* classId, const Value* ids,
                       Number*, Number*, Text, Text, Number flag) {
      const auto* list = static_cast<const ValueArray*>(ids->pointer);
      std::string numbers;
      for (Number i = 0; i < list->count; ++i) numbers += " " + std::to_string(list->elements[i].number);
      const bool ours = *classId == MakeId("{BBE21080-34D9-11D5-B7CE-00E029352378}");
      return current->Note(ours ? "menu" : "menu of another", menu, key, flag, Hex(ids->tag) + numbers);
    });
    windows.Set(33, Noted<"no menu", Number, Number>);
    windows.Set(44, [](void*, Number* key) { return Give(key, ++current->lastKey_); });
  }
}

}  // namespace stranger
