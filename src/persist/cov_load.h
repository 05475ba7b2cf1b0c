// Loading a ".COV" file: the one flow from its first line to its last section, what differs between those who
// load, and where the sections go. UI thread only.
#pragma once

#include <cstdint>
#include <string>

#include "model/reporter.h"
#include "persist/cov_file.h"
#include "persist/cov_reader.h"
#include "qal/types.h"

namespace coverage {

/// What becomes of a file of another project or configuration.
enum class Foreign : std::uint8_t {
  kLoaded,         ///< as if it were of this one
  kLoadedAndTold,  ///< "but will still be loaded"
  kRefused,
  kRefusedAndTold,  ///< "This file is not supported in this project."
};

/// Everything in which loading into windows, by a command and by the automation interface differ.
struct LoadPolicy {
  Foreign untypedOfOtherProject;
  Foreign rangesOfOtherProject;
  Foreign functionsOfOtherProject;
  Foreign untypedOfOtherConfiguration;
  Foreign typedOfOtherConfiguration;
  bool tellsFailures;        ///< that the file cannot be opened, or is none
  bool takesUnknownType;     ///< as functions; else such a file is passed over
  SectionFileLine sections;  ///< whether a section of ranges may name a source file
};

inline constexpr LoadPolicy kWindowLoad = {Foreign::kLoadedAndTold,
                                           Foreign::kLoadedAndTold,
                                           Foreign::kRefusedAndTold,
                                           Foreign::kLoadedAndTold,
                                           Foreign::kLoadedAndTold,
                                           true,
                                           false,
                                           SectionFileLine::kNone};
inline constexpr LoadPolicy kCommandLoad = {Foreign::kLoadedAndTold,
                                            Foreign::kRefusedAndTold,
                                            Foreign::kRefusedAndTold,
                                            Foreign::kLoadedAndTold,
                                            Foreign::kLoadedAndTold,
                                            false,
                                            true,
                                            SectionFileLine::kAllowed};
inline constexpr LoadPolicy kAutomationLoad = {Foreign::kRefused,
                                               Foreign::kRefused,
                                               Foreign::kRefused,
                                               Foreign::kRefused,
                                               Foreign::kLoaded,
                                               false,
                                               true,
                                               SectionFileLine::kAllowed};

/// Takes the sections of a file that is loaded.
class LoadTarget {
 public:
  /// Sections of ranges are about to come; where they go.
  virtual CovSectionSink& BeginRanges(CovType type) = 0;
  /// The same for functions of a source file, whose path stands in the file as `written`. Null when the
  /// source cannot be opened: then nothing more is read.
  virtual CovSectionSink* BeginFunctions(const std::string& written) = 0;
  /// Why not everything could be taken; 0 when everything was.
  virtual qal::Status Outcome() const = 0;

 protected:
  ~LoadTarget() = default;
};

/// 0 or an automation status; what was taken before a failure stays taken.
qal::Status LoadCoverageFile(const std::string& path, const ProjectNames& current, const LoadPolicy& policy,
                             Reporter& reporter, LoadTarget& target);

}  // namespace coverage
