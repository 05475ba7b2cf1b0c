#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "qal/ide_services.h"
#include "qal/project_services.h"
#include "workbench/services/service.h"
#include "workbench/services/settings.h"

namespace workbench {

/// All of these: main thread.

class SettingsStore final : public Service<qal::IQSettings, qal::iid::kSettings> {
 public:
  explicit SettingsStore(SettingsFile& file) : file_(file) {}
  qal::Status WriteInt(qal::WideText section, qal::WideText key, std::int32_t value) override;
  qal::Status SetNumber(qal::WideText key, std::uint32_t value) override;
  qal::Status SetText(qal::WideText key, qal::WideText value) override;
  qal::Status ReadInt(qal::WideText section, qal::WideText key, std::int32_t* value) override;
  qal::Status GetNumber(qal::WideText key, std::uint32_t* value) override;
  qal::Status GetText(qal::WideText key, char16_t** value) override;

 private:
  SettingsFile& file_;
};

/// Questions with a switch each. A question that is switched off is answered with yes without being shown.
class MessageOptions final : public Service<qal::IQMessageOptions, qal::iid::kMessageOptions> {
 public:
  struct Option {
    qal::Guid identifier;
    std::string label;
    bool on;
  };

  explicit MessageOptions(SettingsFile& file) : file_(file) {}
  std::vector<Option> Options() const;
  /// By label, or by the number that Options lists it under (from 1). False when there is none.
  bool Switch(const std::string& labelOrNumber, bool on);
  void Forget() { options_.clear(); }

  qal::Status RegisterOption(const qal::Guid* category, qal::WideText label, qal::Flag byDefault,
                             qal::Guid* option) override;
  qal::Status WithdrawOption(const qal::Guid* option) override;
  qal::Status GetOptionState(qal::Guid option, qal::Flag* on) override;
  qal::Status AskOption(qal::Guid option, qal::WideText message, qal::Flag* answer) override;

 private:
  Option* Find(const qal::Guid& option);

  SettingsFile& file_;
  std::vector<Option> options_;
  std::uint32_t nextOption_ = 1;
};

/// The macro that is being recorded, or was recorded last.
class MacroRecorder final : public Service<qal::IQMacroRecorder, qal::iid::kMacroRecorder> {
 public:
  static constexpr std::size_t kMostLines = 10'000;

  void Start();
  void Stop() { recording_ = false; }
  bool Recording() const { return recording_; }
  const std::vector<std::string>& Lines() const { return lines_; }

  qal::Status IsRecording() override { return recording_ ? 0 : 1; }
  qal::Status RecordLine(qal::WideText line) override;

 private:
  bool recording_ = false;
  std::vector<std::string> lines_;
};

/// Texts of the statuses that the services answer with.
class ErrorText final : public Service<qal::IQErrorText, qal::iid::kErrorText> {
 public:
  qal::Status GetErrorText(qal::Status status, char16_t** text) override;
};

/// What the frame remembers of editor columns, by the key under which each is registered.
class Frame final : public Service<qal::IQFrame, qal::iid::kFrame> {
 public:
  /// Key of a column's handle; empty for a handle that is not known.
  using ColumnKey = std::function<std::string(std::uint32_t column)>;

  Frame(SettingsFile& file, ColumnKey columnKey) : file_(file), columnKey_(std::move(columnKey)) {}
  qal::Status GetColumnSetting(qal::Guid first, qal::Guid second, std::uint32_t column,
                               std::uint32_t* state) override;
  qal::Status SetColumnSetting(qal::Guid first, qal::Guid second, std::uint32_t column,
                               std::uint32_t state) override;

 private:
  SettingsFile& file_;
  ColumnKey columnKey_;
};

/// Named texts and numbers of one session, kept in memory between opening and saving it.
class SessionData final : public Service<qal::IQSessionData, qal::iid::kSessionData> {
 public:
  SessionData();
  ~SessionData();
  /// Identifier → {key: text or number}.
  nlohmann::json& Values() { return *values_; }

  qal::Status Open(const qal::Guid* session) override;
  qal::Status Close() override;
  qal::Status SetSessionText(qal::WideText key, qal::WideText value) override;
  qal::Status GetSessionText(qal::WideText key, qal::WideText fallback, char16_t** value) override;
  qal::Status SetSessionNumber(qal::WideText key, std::uint32_t value) override;
  qal::Status GetSessionNumber(qal::WideText key, std::uint32_t fallback, std::uint32_t* value) override;

 private:
  nlohmann::json* Opened();

  std::unique_ptr<nlohmann::json> values_;
  std::string opened_;
};

}  // namespace workbench
