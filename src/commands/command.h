// A command of the IDE's command line: registration of its client, execution, continuation. UI thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "qal/all.h"
#include "util/entry.h"
#include "util/object.h"

namespace coverage {

class PlaceholderResolver;

/// The IDE holds the IQCmdClient2 part; the owner deletes through the CObject part. Nobody counts references.
class CCmd : public qal::IQCmdClient2, public CObject {
 public:
  /// `shortName` may be null. Registers the client with the host under both command-client identifiers.
  CCmd(qal::IQHost* hostObject, std::uint32_t stripsFirstWord, std::string fullName, const char* shortName,
       std::string prompt, std::string continuation);
  ~CCmd() override;
  CCmd(const CCmd&) = delete;
  CCmd& operator=(const CCmd&) = delete;

  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }
  // Names and results are what these three calls are for: without a place for them nothing is done and they
  // fail. The other places may be null.
  qal::Status GetCommandNames(qal::VariantArray** list) override;
  qal::Status ExecuteCommand(qal::WideText arguments, char16_t** result, char16_t** prompt,
                             qal::Flag* wantsMore, std::uint16_t* statusWord,
                             qal::IQCommandOutput* sink) override;
  qal::Status CancelCommand() override { return qal::kOk; }
  qal::Status GetCommandNamesEx(qal::VariantArray** list, std::int32_t* id) override;

  /// The command itself, with the line behind its name. Sets the result text on failure too.
  virtual qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) = 0;
  /// The next line of a command that asked for one; `more` stays set unless it is the continuation text.
  virtual qal::Status ContinueCommand(const std::string& line, std::string& result, std::uint32_t& more);

 protected:
  /// Who is told where the command is entered and left; may be null.
  virtual EntryListener* Entries() { return nullptr; }
  /// One line to the output sink that the IDE gave with this execution; skipped without one.
  void WriteLine(const std::string& line) const;
  /// The expander that all commands of the host share.
  PlaceholderResolver* SharedPlaceholders() const { return placeholders.get(); }

  std::uint32_t stripFirstWord;
  std::string promptText;
  std::string continuationText;
  qal::IQExpression* expressionService = nullptr;
  std::uint32_t moreInput = 0;
  std::uint16_t status = 0;
  qal::IQCommandOutput* output = nullptr;
  qal::IQHost* host;
  std::shared_ptr<PlaceholderResolver> placeholders;
  std::vector<std::string> names;
  std::int32_t commandId = -1;
};

}  // namespace coverage
