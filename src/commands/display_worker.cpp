#include "commands/display_worker.h"

#include <string>
#include <thread>

#include "commands/address_words.h"
#include "model/instruction_walk.h"
#include "model/services.h"
#include "platform/text.h"
#include "qal/all.h"
#include "util/texts.h"

namespace coverage {

/// One listing and its thread. Made and destroyed on the UI thread; services are looked up there too.
class DisplayWorkers::Listing {
 public:
  Listing(qal::IQHost* host, CommandModel& model, qal::IQCommandOutput* output)
      : model_(model),
        reader_(model),
        output_(output),
        instructions_(host),
        words_(host),
        functionWord_(Text(strings::kFunctionWord)),
        rangeWord_(Text(strings::kRangeWord)),
        nothingText_(Text(strings::kCannotDisplay)) {
    // The IDE learns from the request that output goes on behind the command; nothing of the service is used.
    FindService<qal::IQUnknown>(host, qal::iid::kCommandOutputService);
    thread_ = std::thread([this] { Run(); });
  }
  ~Listing() {
    stop_ = true;
    thread_.join();
  }
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  void Stop() { stop_ = true; }
  bool ended() const { return ended_; }

 private:
  void Run() {
    try {
      const std::uint32_t windows = model_.CountWindows();
      if (windows == 0) WriteRows(model_.DescribeStore());
      for (std::uint32_t number = 1; number <= windows && !stop_; ++number) {
        const auto window = model_.DescribeWindow(number);
        if (!window) break;
        WriteHeader(number, *window);
        WriteRows(*window);
      }
      if (rows_ == 0) Write(nothingText_);
    } catch (...) {
      // Out of memory: the listing ends here, and says that it does.
    }
    if (output_ != nullptr) output_->EndOutput(platform::Wide({}).get());
    ended_ = true;
  }

  void WriteHeader(std::uint32_t number, const StoreDescription& store) {
    const bool isRange = store.functionName.empty();
    Write("\t" + (isRange ? rangeWord_ : functionWord_) + " " + std::to_string(number) + ": " +
          words_.NameOf(store.functionName, store.start, store.end) + "\n");
  }

  void WriteRows(const StoreDescription& store) {
    InstructionWalk walk(store.start, store.end, instructions_.Alignment(), instructions_);
    Instruction instruction;
    bool found = false;
    while (!stop_ && walk.Step(found, instruction)) {
      if (!found) continue;
      CoverageCell cell;
      const CommandModel::CellRead read = model_.ReadCell(store.id, walk.address(), cell);
      if (read == CommandModel::CellRead::kGone) return;
      const bool counted = read == CommandModel::CellRead::kCell;
      const std::string address = words_.Asked(walk.address()).value_or(std::string(instruction.addressText));
      const std::string times = counted ? std::to_string(cell.times) : " 0";
      Write(platform::Format("%8s%4s\t", times.c_str(),
                             std::string(PassText(counted ? cell.pass : 0)).c_str()) +
            address + "\t" + std::string(instruction.codeText) + "\t\n");
      ++rows_;
    }
  }

  void Write(const std::string& line) {
    if (output_ != nullptr) output_->WriteLine(platform::Wide(line).get(), platform::Wide({}).get());
  }

  CommandModel& model_;
  CommandModel::Reader reader_;
  qal::IQCommandOutput* output_;
  InstructionReader instructions_;
  AddressWords words_;
  std::string functionWord_;
  std::string rangeWord_;
  std::string nothingText_;
  std::uint64_t rows_ = 0;
  std::atomic<bool> stop_ = false;
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

DisplayWorkers::DisplayWorkers() = default;

DisplayWorkers::~DisplayWorkers() { JoinAll(); }

void DisplayWorkers::Start(qal::IQHost* host, CommandModel& model, qal::IQCommandOutput* output) {
  listings_.remove_if([](const auto& listing) { return listing->ended(); });
  listings_.push_back(std::make_unique<Listing>(host, model, output));
}

void DisplayWorkers::StopAll() {
  for (const auto& listing : listings_) listing->Stop();
}

void DisplayWorkers::JoinAll() {
  StopAll();
  listings_.clear();
}

}  // namespace coverage
