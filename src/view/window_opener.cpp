#include "view/window_opener.h"

#include <algorithm>
#include <utility>

#include "formatview/command_sink.h"
#include "platform/text.h"
#include "util/texts.h"
#include "view/raised.h"

namespace coverage {
namespace {

// How the IDE is asked for the frame of a window and for the view inside it.
constexpr char kFrameKey[] = "{WK_00000001_COVERAGE}";
constexpr std::uint32_t kFrameStyle = 0x1804;
constexpr std::uint32_t kFrameDock = 0xE81E;
constexpr std::uint32_t kViewStyle = 0x400;

// States of a frame.
constexpr std::uint32_t kToolbarState = 0x2000;
constexpr std::uint32_t kFirstShowState = 18;
constexpr std::uint32_t kSecondShowState = 34;
constexpr std::uint32_t kStatesToShow[] = {5, 9, 17};

/// A range ends on the last byte of its last step.
std::uint32_t LastByte(std::uint32_t start, std::uint32_t end) {
  return start != end && end != 0 && end % 2 == 0 ? end - 1 : end;
}

}  // namespace

WindowOpener::WindowOpener(const ViewServices& services, const PaneServices& panes, WindowTable& table,
                           ApplyDisplay applyDisplay)
    : services_(services),
      panes_(panes),
      model_(services.model),
      table_(table),
      applyDisplay_(std::move(applyDisplay)) {}

bool WindowOpener::CommandEnabled() const {
  return model_.Windows().size() < kMostWindows || model_.FirstRangeWindow() != nullptr;
}

void WindowOpener::Fill(const std::function<void()>& action) {
  const Raised filling(filling_);
  action();
}

// Frames.

CoverageModel::WindowPtr WindowOpener::NewFrame(WindowKind kind, const std::string& viewKey) const {
  CUiCustomizer* const customizer = services_.customizer;
  if (customizer == nullptr) return nullptr;
  auto window = std::make_shared<CoverageWindow>();
  window->kind = kind;
  window->viewKey = viewKey;
  const std::string title = Text(strings::kCoverage);
  customizer->CreateFrame(kFrameKey, title, kFrameStyle, kFrameDock, &window->frame, &window->viewKey);
  if (window->frame == 0) return nullptr;
  qal::WindowHandle view = 0;
  customizer->CreateFrame(window->viewKey, title, kViewStyle, 0, &view, nullptr);
  return window;
}

void WindowOpener::FinishFrame(qal::WindowHandle frame) const {
  CUiCustomizer& customizer = *services_.customizer;
  if (customizer.QueryFrameToolbar(frame) == qal::kOk) customizer.SetFrameState(frame, kToolbarState);
  for (const std::uint32_t shown : {kFirstShowState, kSecondShowState}) {
    std::uint32_t state = 0;
    if (qal::Failed(customizer.GetFrameState(frame, &state))) return;
    if (std::find(std::begin(kStatesToShow), std::end(kStatesToShow), state) == std::end(kStatesToShow))
      continue;
    customizer.SetFrameState(frame, shown);
  }
}

WindowOpener::StatisticsPane& WindowOpener::OpenWindow(const CoverageModel::WindowPtr& window,
                                                       DataPane& first) {
  StatisticsPane& pane = table_.Open(panes_, window, first);
  FinishFrame(window->frame);
  return pane;
}

void WindowOpener::ShowWindow(CoverageWindow& window) {
  StatisticsPane* const pane = table_.PaneOf(window);
  if (pane == nullptr) return;
  applyDisplay_(*pane);
  pane->SizeColumns();
  window.stale.MarkRows(StaleRows::kWrite);
  pane->List().SetFocus();
}

// Ranges.

CoverageWindow* WindowOpener::NewRangeWindow(std::uint32_t start, std::uint32_t end) {
  end = LastByte(start, end);
  const auto window = NewFrame(WindowKind::kRange, {});
  if (!window) return nullptr;
  window->start = start;
  window->end = end;
  const auto instance = model_.NewInstance(start, end, {}, 1);
  model_.Add(*window, instance);
  DataPane& pane = table_.NewPane(panes_, instance);
  // The pane registers its range when its window is created.
  pane.CreatePane(window->frame);
  if (instance->rangeSet == 0) {
    // The component may have ended while the person was told; the pane is gone then.
    model_.RemoveAll(*window);
    table_.Retire(pane);
    table_.CloseFrame(window->frame);
    return nullptr;
  }
  services_.history.NoteRange(start, end);
  OpenWindow(window, pane);
  ShowWindow(*window);
  return window->open ? window.get() : nullptr;
}

CoverageInstance& WindowOpener::AddInstance(CoverageWindow& window, std::uint32_t start, std::uint32_t end,
                                            const std::string& name) {
  const auto instance = model_.NewInstance(start, end, name, 0);
  model_.Add(window, instance);
  if (StatisticsPane* const pane = table_.PaneOf(window)) pane->AddPane(table_.NewPane(panes_, instance));
  return *instance;
}

CoverageInstance* WindowOpener::AddRange(CoverageWindow& window, std::uint32_t start, std::uint32_t end,
                                         bool onlyOnce) {
  end = LastByte(start, end);
  if (onlyOnce && std::any_of(window.instances.begin(), window.instances.end(), [&](const auto& each) {
        return each.second->start == start && each.second->end == end && each.second->functionName.empty();
      })) {
    return nullptr;
  }
  CoverageInstance& instance = AddInstance(window, start, end, {});
  const auto kept = window.Instance(window.NumberOf(instance));
  model_.Register(instance, services_.reporter);
  // While the person was told of a refusal, the window may have been closed.
  if (kept->window == nullptr) return nullptr;
  if (instance.rangeSet != 0) services_.history.NoteRange(start, end);
  if (!filling_) ShowRanges(window);
  return &instance;
}

CoverageInstance& WindowOpener::AddUnregistered(CoverageWindow& window, std::uint32_t start,
                                                std::uint32_t end) {
  CoverageInstance& instance = AddInstance(window, start, end, {});
  model_.Enable(instance, false);
  return instance;
}

void WindowOpener::ShowRanges(CoverageWindow& window) {
  model_.DisplayRegistered(window);
  if (StatisticsPane* const pane = table_.PaneOf(window)) pane->ResetList();
  ShowWindow(window);
}

void WindowOpener::RestoreRanges(std::span<const SavedRange> ranges, const std::string& viewKey) {
  CoverageModel::WindowPtr window;
  for (const auto& each : model_.Windows()) {
    if (!window && !each->isFile()) window = each;
  }
  bool refused = false;
  Fill([&] {
    for (const SavedRange& saved : ranges) {
      CoverageModel::InstancePtr instance;
      if (!window) {
        window = NewFrame(WindowKind::kRange, viewKey);
        if (!window) return;
        window->start = saved.start;
        window->end = saved.end;
        instance = model_.NewInstance(saved.start, saved.end, {}, 1);
        model_.Add(*window, instance);
        DataPane& pane = table_.NewPane(panes_, instance);
        pane.CreatePane(window->frame);
        if (!services_.sink.Exists()) return;
        OpenWindow(window, pane);
      } else {
        instance = window->Instance(window->NumberOf(AddInstance(*window, saved.start, saved.end, {})));
        model_.ReRegister(*instance, services_.reporter);
      }
      if (!window->open) return;
      const bool registered = instance->rangeSet != 0;
      model_.Enable(*instance, registered && saved.enableStatus != 0);
      refused = refused || !registered;
      services_.history.starts.Note(platform::Format("%08x", saved.start), saved.start);
      services_.history.ends.Note(platform::Format("%08x", saved.end), saved.end);
    }
  });
  if (ranges.empty() || !window || !window->open) return;
  ShowRanges(*window);
  if (refused) services_.sink.Post(sink_message::kCloseChild, window->frame);
}

// Source files.

FileFunctions WindowOpener::List(const std::string& sourceFile) {
  FileFunctions listing = ListFileFunctions(services_.host, sourceFile, true);
  ReportListing(listing, services_.reporter);
  return listing;
}

CoverageWindow* WindowOpener::NewFileWindow(const std::string& sourceFile, const std::string& typed,
                                            const std::string& viewKey) {
  const FileFunctions listing = List(sourceFile);
  if (listing.outcome != FileFunctions::Outcome::kListed || listing.functions.empty()) return nullptr;
  const auto window = NewFrame(WindowKind::kFile, viewKey);
  if (!window) return nullptr;
  window->sourceFile = sourceFile;
  window->typedSourceFile = typed;
  Fill([&] {
    for (const SourceFunction& function : listing.functions) {
      if (window->open) {
        const auto number =
            window->NumberOf(AddInstance(*window, function.start, function.end, function.name));
        const auto instance = window->Instance(number);
        model_.ReRegister(*instance, services_.reporter);
      } else {
        const auto instance = model_.NewInstance(function.start, function.end, function.name, 1);
        model_.Add(*window, instance);
        DataPane& pane = table_.NewPane(panes_, instance);
        pane.CreatePane(window->frame);
        if (!services_.sink.Exists()) return;
        services_.history.NoteRange(function.start, function.end);
        OpenWindow(window, pane);
        services_.history.lastSourceFile = sourceFile;
      }
      window->functionNames.push_back(function.name);
      // While the person is told of a refusal, the window may be closed.
      if (!window->open) return;
    }
  });
  if (!window->open) return nullptr;
  ShowRanges(*window);
  return window.get();
}

void WindowOpener::FillAgain(CoverageWindow& window) {
  const FileFunctions listing = List(window.sourceFile);
  const bool listed = listing.outcome == FileFunctions::Outcome::kListed;
  // The symbols that the program has now know no function of the file.
  if (listed && listing.functions.empty()) services_.reporter.Inform(strings::kProgramNotDownloaded);
  StatisticsPane* const statistics = table_.PaneOf(window);
  DataPane* const kept = statistics != nullptr ? statistics->ViewPane() : nullptr;
  if (!listed || listing.functions.empty() || kept == nullptr) {
    for (const auto& [number, instance] : window.instances) model_.Withdraw(*instance);
    model_.DisplayRegistered(window);
    return;
  }
  // The pane with the window stays, whatever number its instance had.
  const CoverageModel::InstancePtr reused = kept->Shared();
  model_.RemoveAll(window);
  for (DataPane* pane : statistics->Panes()) {
    if (pane != kept) table_.Retire(*pane);
  }
  window.functionNames.clear();
  Fill([&] {
    for (const SourceFunction& function : listing.functions) {
      if (window.functionNames.empty()) {
        model_.Add(window, reused);
        kept->Reuse(function.start, function.end, function.name, 1);
        model_.Enable(*reused, reused->rangeSet != 0);
        if (reused->rangeSet != 0) services_.history.NoteRange(function.start, function.end);
      } else {
        const auto number = window.NumberOf(AddInstance(window, function.start, function.end, function.name));
        model_.ReRegister(*window.Instance(number), services_.reporter);
      }
      window.functionNames.push_back(function.name);
      if (!window.open) return;
    }
  });
  if (!window.open) return;
  model_.DisplayRegistered(window);
  if (StatisticsPane* const pane = table_.PaneOf(window)) pane->ResetList();
}

}  // namespace coverage
