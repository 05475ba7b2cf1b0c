#include "persist/cov_load.h"

#include "persist/automation_status.h"
#include "platform/files.h"
#include "string_ids.h"

namespace coverage {
namespace {

Foreign ForeignnessOf(ProjectMatch match, CovType type, const LoadPolicy& policy) {
  const bool untyped = type == CovType::kUntyped;
  if (match == ProjectMatch::kSame) return Foreign::kLoaded;
  if (match == ProjectMatch::kConfigurationDiffers) {
    return untyped ? policy.untypedOfOtherConfiguration : policy.typedOfOtherConfiguration;
  }
  if (untyped) return policy.untypedOfOtherProject;
  return type == CovType::kRange ? policy.rangesOfOtherProject : policy.functionsOfOtherProject;
}

bool MayLoad(ProjectMatch match, CovType type, const LoadPolicy& policy, Reporter& reporter) {
  const Foreign foreign = ForeignnessOf(match, type, policy);
  if (foreign == Foreign::kLoadedAndTold) {
    reporter.Inform(match == ProjectMatch::kConfigurationDiffers ? strings::kOtherConfigurationLoaded
                                                                 : strings::kOtherProjectLoaded);
  } else if (foreign == Foreign::kRefusedAndTold) {
    reporter.Inform(strings::kOtherProjectRefused);
  }
  return foreign == Foreign::kLoaded || foreign == Foreign::kLoadedAndTold;
}

}  // namespace

qal::Status LoadCoverageFile(const std::string& path, const ProjectNames& current, const LoadPolicy& policy,
                             Reporter& reporter, LoadTarget& target) {
  platform::TextReader file;
  if (!file.Open(path)) {
    if (policy.tellsFailures) reporter.Inform(strings::kFileCannotBeOpened);
    return automation::kCannotOpen;
  }
  CovReader reader(file);
  CovHeader header;
  const bool valid = reader.ReadHeader(header);
  const qal::Status invalid =
      header.type == CovType::kUntyped ? automation::kInvalidUntyped : automation::kInvalidTyped;
  if (!valid) {
    if (policy.tellsFailures) reporter.Inform(strings::kInvalidCoverageFile);
    return invalid;
  }
  if (header.type == CovType::kOther && !policy.takesUnknownType) return invalid;
  if (!MayLoad(CompareProject(header, current), header.type, policy, reporter)) return invalid;

  if (header.type == CovType::kUntyped || header.type == CovType::kRange) {
    reader.ReadSections(header.type, policy.sections, target.BeginRanges(header.type));
    return target.Outcome();
  }
  CovSectionSink* const functions = target.BeginFunctions(header.fileName);
  if (functions == nullptr) return automation::kInvalidTyped;
  reader.ReadSections(CovType::kFile, policy.sections, *functions);
  return target.Outcome();
}

}  // namespace coverage
