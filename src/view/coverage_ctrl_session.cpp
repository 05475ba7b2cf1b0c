#include "model/services.h"
#include "platform/text.h"
#include "view/coverage_ctrl.h"
#include "view/session_store.h"

// The IDE's session: the windows come and go with it.

namespace coverage {
namespace {

/// The session's data, open as long as the object lives.
class OpenSession {
 public:
  explicit OpenSession(qal::IQHost* host)
      : data_(FindService<qal::IQSessionData>(host, qal::iid::kSessionData)) {
    if (data_ != nullptr && qal::Failed(data_->Open(&qal::iid::kSessionData))) data_ = nullptr;
  }
  ~OpenSession() {
    if (data_ != nullptr) data_->Close();
  }
  OpenSession(const OpenSession&) = delete;
  OpenSession& operator=(const OpenSession&) = delete;
  qal::IQSessionData* get() const { return data_; }

 private:
  qal::IQSessionData* data_;
};

bool SessionIsCurrent(qal::IQHost* host) {
  void* found = nullptr;
  if (host == nullptr || qal::Failed(host->QueryInterface(&qal::iid::kSessionState, &found))) return false;
  return found != nullptr && static_cast<qal::IQSessionState*>(found)->IsCurrent() != 0;
}

}  // namespace

qal::Status CJepCoverageCtrl::OnSessionOpened(qal::WideText first, qal::WideText second, qal::WideText,
                                              qal::WideText fourth) {
  return Enter(
      delivery.get(),
      [&] {
        // The IDE expects to be asked; the answers name the session, whose data are found without a name.
        platform::WideOut sessionText;
        platform::WideOut projectName;
        if (auto* const project = FindService<qal::IQProject>(host, qal::iid::kProject)) {
          project->GetSessionText(first, second, fourth, sessionText.put());
          project->GetProjectName(first, second, projectName.put());
        }
        const OpenSession session(host);
        if (session.get() == nullptr) return qal::kOk;
        SessionStore(services, *table, *opener, saver, *session.get()).Restore();
        BringUpToDate();
        return qal::kOk;
      },
      qal::kOk);
}

qal::Status CJepCoverageCtrl::OnSessionSaving(qal::WideText, qal::WideText, qal::WideText) {
  return Enter(
      delivery.get(),
      [&] {
        if (workspaceService == nullptr || frameService == nullptr || !SessionIsCurrent(host))
          return qal::kOk;
        const OpenSession session(host);
        if (session.get() != nullptr) SessionStore(services, *table, *opener, saver, *session.get()).Save();
        return qal::kOk;
      },
      qal::kOk);
}

}  // namespace coverage
