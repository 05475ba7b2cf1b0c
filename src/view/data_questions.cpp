#include "view/data_questions.h"

#include <algorithm>
#include <array>

#include "dialogs/small_dialogs.h"

namespace coverage {
namespace {

/// Whose data are looked at.
enum class Whose : std::uint8_t { kThis, kFirst, kAny };
enum class Save : std::uint8_t { kInstance, kWindow };
/// What happens to the instance when the person does without saving, and when nobody had to be asked.
enum class Effect : std::uint8_t {
  kNone,
  kUnmodified,           ///< counts as not modified
  kUnsaved,              ///< counts as not saved
  kUnsavedIfUnmodified,  ///< the same, when it was not modified
  kWindowUnsaved,        ///< every registered instance of the window counts as not saved
  kCleared,              ///< counters cleared
};
/// When the clear is recorded for a macro.
enum class Recorded : std::uint8_t { kNever, kAlways, kIfAtStake, kIfAskedOrUnmodified };

struct Case {
  MessageOption option;
  bool optionFirst;  ///< the option is read before the data are looked at
  Whose whose;
  bool (*atStake)(const CoverageInstance& instance);
  Save save;
  Effect withoutSaving;
  Effect notAsked;
  Recorded recorded;
};

bool Registered(const CoverageInstance& instance) { return instance.HasDataAtStake(); }
bool Enabled(const CoverageInstance& instance) {
  return instance.modified != 0 && instance.enableStatus != 0;
}
bool Modified(const CoverageInstance& instance) { return instance.modified != 0; }
bool Unsaved(const CoverageInstance& instance) { return instance.modified == 1 && instance.saved == 0; }

constexpr auto kClear = MessageOption::kClearData;
constexpr auto kClosing = MessageOption::kClearDataAtClosing;

/// In the order of DataLoss.
constexpr std::array<Case, 8> kCases = {{
    {kClosing, true, Whose::kAny, Registered, Save::kWindow, Effect::kNone, Effect::kNone, Recorded::kNever},
    {kClosing, true, Whose::kFirst, Registered, Save::kWindow, Effect::kUnmodified, Effect::kNone,
     Recorded::kNever},
    {kClear, false, Whose::kThis, Enabled, Save::kInstance, Effect::kNone, Effect::kUnsavedIfUnmodified,
     Recorded::kIfAskedOrUnmodified},
    {kClear, false, Whose::kThis, Modified, Save::kWindow, Effect::kNone, Effect::kUnsaved,
     Recorded::kAlways},
    {kClear, true, Whose::kThis, Unsaved, Save::kWindow, Effect::kNone, Effect::kWindowUnsaved,
     Recorded::kIfAtStake},
    {kClosing, false, Whose::kThis, Enabled, Save::kInstance, Effect::kUnmodified, Effect::kNone,
     Recorded::kNever},
    {kClear, false, Whose::kThis, Enabled, Save::kInstance, Effect::kUnmodified, Effect::kCleared,
     Recorded::kNever},
    {kClear, true, Whose::kAny, Registered, Save::kWindow, Effect::kNone, Effect::kNone, Recorded::kNever},
}};

bool AtStake(const Case& each, const CoverageInstance& instance) {
  if (each.whose == Whose::kThis) return each.atStake(instance);
  const auto& instances = instance.window->instances;
  const auto last = each.whose == Whose::kFirst ? std::next(instances.begin()) : instances.end();
  return std::any_of(instances.begin(), last, [&](const auto& other) { return each.atStake(*other.second); });
}

void Apply(Effect effect, CoverageInstance& instance, CoverageModel& model) {
  switch (effect) {
    case Effect::kNone:
      break;
    case Effect::kUnmodified:
      instance.modified = 0;
      break;
    case Effect::kUnsavedIfUnmodified:
      if (instance.modified == 0) instance.saved = 0;
      break;
    case Effect::kUnsaved:
      instance.saved = 0;
      break;
    case Effect::kWindowUnsaved:
      for (const auto& [number, each] : instance.window->instances) {
        if (each->rangeSet == 1) each->saved = 0;
      }
      break;
    case Effect::kCleared:
      model.Clear(instance);
      break;
  }
}

}  // namespace

bool DataQuestions::MayLose(DataLoss loss, CoverageInstance& asked) {
  if (asked.window == nullptr) return false;
  const Case& each = kCases[static_cast<std::size_t>(loss)];
  CoverageInstance& instance = each.whose == Whose::kThis ? asked : *asked.window->instances.begin()->second;
  const bool unmodified = instance.modified == 0;
  const bool atStake = AtStake(each, instance);
  const bool asks = each.optionFirst ? services_.options.Asks(each.option) && atStake
                                     : atStake && services_.options.Asks(each.option);
  if (asks) {
    using Choice = ConfirmationDialog::Choice;
    const Choice choice = ConfirmationDialog(services_.host).Ask(&services_.sink);
    // While the question is open the IDE may close windows, this one too.
    if (choice == Choice::kCancel || asked.window == nullptr) return false;
    if (choice == Choice::kGoOn) {
      Apply(each.withoutSaving, instance, services_.model);
    } else {
      const bool saved =
          each.save == Save::kWindow ? saver_.SaveWindow(*asked.window) : saver_.SaveData(asked);
      if (!saved || asked.window == nullptr) return false;
    }
  } else {
    Apply(each.notAsked, instance, services_.model);
  }
  const bool recorded = each.recorded == Recorded::kAlways ||
                        (each.recorded == Recorded::kIfAtStake && atStake) ||
                        (each.recorded == Recorded::kIfAskedOrUnmodified && (asks || unmodified));
  if (recorded) services_.macro.FinishReset(true);
  return true;
}

}  // namespace coverage
