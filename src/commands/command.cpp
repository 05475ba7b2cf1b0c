#include "commands/command.h"

#include <map>
#include <memory>
#include <utility>

#include "model/services.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "util/placeholder_resolver.h"

namespace coverage {
namespace {

/// The expander that the commands of a host share, while there are any.
std::shared_ptr<PlaceholderResolver> PlaceholdersOf(qal::IQHost* host) {
  static std::map<qal::IQHost*, std::weak_ptr<PlaceholderResolver>> known;
  std::erase_if(known, [](const auto& entry) { return entry.second.expired(); });
  std::shared_ptr<PlaceholderResolver> placeholders = known[host].lock();
  if (placeholders == nullptr) known[host] = placeholders = std::make_shared<PlaceholderResolver>(host);
  return placeholders;
}

}  // namespace

CCmd::CCmd(qal::IQHost* hostObject, std::uint32_t stripsFirstWord, std::string fullName,
           const char* shortName, std::string prompt, std::string continuation)
    : stripFirstWord(stripsFirstWord),
      promptText(std::move(prompt)),
      continuationText(std::move(continuation)),
      host(hostObject),
      placeholders(PlaceholdersOf(hostObject)) {
  names.push_back(std::move(fullName));
  if (shortName != nullptr) names.emplace_back(shortName);
  if (host == nullptr) return;
  host->Advise(&qal::iid::kCmdClient, this);
  host->Advise(&qal::iid::kCmdClient2, this);
  expressionService = FindService<qal::IQExpression>(host, qal::iid::kExpression);
}

CCmd::~CCmd() {
  if (host == nullptr) return;
  host->Unadvise(&qal::iid::kCmdClient, this);
  host->Unadvise(&qal::iid::kCmdClient2, this);
}

qal::Status CCmd::QueryInterface(const qal::Guid* iid, void** out) {
  if (out == nullptr) return qal::kFail;
  *out = nullptr;
  if (iid == nullptr ||
      (*iid != qal::iid::kUnknown && *iid != qal::iid::kCmdClient && *iid != qal::iid::kCmdClient2)) {
    return qal::kNoInterface;
  }
  *out = static_cast<qal::IQCmdClient2*>(this);
  return qal::kOk;
}

qal::Status CCmd::GetCommandNames(qal::VariantArray** list) {
  if (list == nullptr) return qal::kFail;
  *list = nullptr;
  return Enter(
      Entries(),
      [&] {
        *list = platform::NewTextArray(names);
        return *list != nullptr ? qal::kOk : qal::kFail;
      },
      qal::kFail);
}

qal::Status CCmd::GetCommandNamesEx(qal::VariantArray** list, std::int32_t* id) {
  const qal::Status listed = GetCommandNames(list);
  if (qal::Succeeded(listed) && id != nullptr) *id = commandId;
  return listed;
}

qal::Status CCmd::ExecuteCommand(qal::WideText arguments, char16_t** result, char16_t** prompt,
                                 qal::Flag* wantsMore, std::uint16_t* statusWord,
                                 qal::IQCommandOutput* sink) {
  if (result == nullptr) return qal::kFail;
  status = 0;
  output = sink;
  std::string text;
  const qal::Status outcome = Enter(
      Entries(),
      [&] {
        std::string line = platform::Narrow(arguments);
        if (moreInput != 0) return ContinueCommand(line, text, moreInput);
        if (stripFirstWord != 0) {
          const std::size_t blank = line.find(' ');
          line.erase(0, blank == std::string::npos ? blank : blank + 1);
        }
        return DoCommand(line, text, moreInput);
      },
      qal::kFail);
  // The sink is this line's; the next line brings its own.
  output = nullptr;
  *result = platform::NewWide(text);
  if (prompt != nullptr) *prompt = platform::NewWide(moreInput != 0 ? promptText : std::string());
  if (wantsMore != nullptr) *wantsMore = moreInput != 0 ? qal::kTrue : qal::kFalse;
  if (statusWord != nullptr) *statusWord = status;
  return outcome;
}

qal::Status CCmd::ContinueCommand(const std::string& line, std::string&, std::uint32_t& more) {
  more = line != continuationText ? 1 : 0;
  return qal::kOk;
}

void CCmd::WriteLine(const std::string& line) const {
  if (output != nullptr) output->WriteLine(platform::Wide(line).get(), platform::Wide({}).get());
}

}  // namespace coverage
