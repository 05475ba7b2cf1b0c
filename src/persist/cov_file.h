// What a ".COV" file says before its first section, and whose data it is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "qal/all.h"

namespace coverage {

enum class CovType : std::uint8_t {
  kUntyped,  ///< oldest form: no type line, ranges, rows separated by blanks
  kRange,
  kFile,
  kOther,  ///< a type line with any other value
};

struct CovHeader {
  std::string configuration;
  std::string project;
  CovType type = CovType::kUntyped;
  std::string fileName;  ///< line 4 as it stands; read for kFile and kOther
};

/// The three keys by which the IDE knows its workspace, project and configuration; each is asked while it is
/// empty.
struct ProjectKeys {
  std::string configuration;
  std::string project;
  std::string workspace;
};

struct ProjectNames {
  std::string configuration;
  std::string project;
};

/// Names of the open project and configuration; a name stays empty without the project service. UI thread
/// only.
ProjectNames CurrentProjectNames(qal::IQHost* host, ProjectKeys& keys);

enum class ProjectMatch : std::uint8_t { kSame, kConfigurationDiffers, kProjectDiffers };

/// Byte for byte; the project first.
ProjectMatch CompareProject(const CovHeader& header, const ProjectNames& current);

}  // namespace coverage
