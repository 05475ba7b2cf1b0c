#include "platform/files.h"
#include "platform/text.h"
#include "workbench/console/console.h"

namespace workbench {
namespace {

AddressRange TakeRange(Console& console, Words& words) {
  const std::uint32_t start = console.AddressOf(words.Take("the first address"));
  const std::uint32_t last = console.AddressOf(words.Take("the last address"));
  if (start > last) throw VerbError("the first address is above the last");
  return {start, last};
}

std::string Text(const AddressRange& range) { return platform::Format("%08x-%08x", range.start, range.last); }

void OnRecord(Console& console, Words& words) {
  DebugSession& debugger = console.ide().Debugger();
  if (!words.Empty()) {
    const std::string what = words.Take("path, counts or off");
    words.End();
    if (SameWord(what, "path")) {
      debugger.SetOffer(CoverageOffer::kPath);
    } else if (SameWord(what, "counts")) {
      debugger.SetOffer(CoverageOffer::kCounts);
    } else if (SameWord(what, "off")) {
      debugger.SetOffer(CoverageOffer::kNone);
    } else {
      throw VerbError("record " + what + " is not known: path, counts or off");
    }
  }
  const char* const names[] = {"off", "path", "counts"};
  console.Print(std::string("record: ") + names[static_cast<int>(debugger.Offer())] + ", collection " +
                (debugger.Collection() ? "on" : "off"));
}

void OnRanges(Console& console, Words& words) {
  words.End();
  for (const AddressRange& range : console.ide().Debugger().Ranges()) console.Print(Text(range));
  console.Print(Counted(console.ide().Debugger().Ranges().size(), "range") + " registered");
}

void OnRefuse(Console& console, Words& words) {
  if (words.TakeIf("none")) {
    words.End();
    console.ide().Debugger().Refuse(std::nullopt);
    return console.Print("no range is refused");
  }
  const AddressRange range = TakeRange(console, words);
  words.End();
  console.ide().Debugger().Refuse(range);
  console.Print("ranges that touch " + Text(range) + " are refused");
}

void OnLimits(Console& console, Words& words) {
  if (!words.Empty()) {
    const AddressRange range = TakeRange(console, words);
    words.End();
    console.ide().Debugger().SetLimits(range);
  }
  console.Print("valid addresses: " + Text(console.ide().Debugger().Limits()));
}

void OnService(Console& console, Words& words) {
  const std::string name = words.Take("the service");
  const bool on = words.TakeSwitch("the service");
  words.End();
  if (!console.ide().Services().Switch(name, on)) throw VerbError("there is no service " + name);
  console.Print(name + (on ? ": on" : ": off"));
}

void OnServices(Console& console, Words& words) {
  if (words.TakeIf("missing")) {
    words.End();
    for (const qal::Guid& guid : console.ide().Services().Unknown()) console.Print(GuidText(guid));
    return;
  }
  words.End();
  for (const auto& service : console.ide().Services().Services()) {
    const char* state = service.available ? "on" : service.on ? "not offered" : "off";
    console.Print(service.name + ": " + state);
  }
}

void OnDisk(Console& console, Words& words) {
  if (words.TakeIf("unlimited")) {
    words.End();
    platform::SetDiskSpace(std::nullopt);
    return console.Print("disk: unlimited");
  }
  const std::uint64_t bytes = words.TakeNumber("the number of bytes", ~std::uint64_t{0});
  words.End();
  platform::SetDiskSpace(bytes);
  console.Print("disk: " + std::to_string(bytes) + " bytes left");
}

constexpr Verb kVerbs[] = {
    {"record", "[path|counts|off]", "Chooses the coverage service that the debugger offers.", OnRecord},
    {"ranges", "", "Lists the ranges that the component has registered.", OnRanges},
    {"refuse", "START END\nnone", "Has the debugger refuse ranges that touch this one.", OnRefuse},
    {"limits", "[LOW HIGH]", "Shows or sets the lowest and highest valid address.", OnLimits},
    {"service", "NAME on|off", "Takes a service away, or brings it back.", OnService},
    {"services", "\nmissing", "Lists the services, or identifiers asked for that nobody offers.", OnServices},
    {"disk", "BYTES\nunlimited", "Lets files grow by so many bytes only, as on a disk that is nearly full.",
     OnDisk},
};

}  // namespace

std::span<const Verb> DebuggerVerbs() { return kVerbs; }

}  // namespace workbench
