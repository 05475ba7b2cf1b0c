#include "persist/cov_save.h"

#include "persist/automation_status.h"
#include "platform/files.h"

namespace coverage {

qal::Status SaveCoverageFile(const std::string& path, const CovHeader& header, bool withFileLine,
                             const std::function<qal::Status(CovOutput&)>& sections) {
  platform::TextWriter file;
  if (!file.Open(path)) return automation::kCannotOpen;
  CovOutput out(file);
  out.Header(header, withFileLine);
  const qal::Status status = sections(out);
  out.Finish();
  if (!file.Close() && qal::Succeeded(status)) return automation::kCannotOpen;
  return status;
}

}  // namespace coverage
