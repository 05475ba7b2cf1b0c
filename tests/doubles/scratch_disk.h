#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/files.h"

namespace doubles {

/// A fresh directory that is drive C: for the life of the object; removed with everything in it at the end.
class ScratchDisk {
 public:
  ScratchDisk() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qal-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    platform::SetDriveRoot(root_);
    platform::SetCurrentDirectory("C:\\");
  }
  ~ScratchDisk() {
    platform::SetDiskSpace(std::nullopt);
    platform::SetCurrentDirectory("");
    platform::SetDriveRoot("/");
    std::filesystem::remove_all(root_);
  }
  ScratchDisk(const ScratchDisk&) = delete;
  ScratchDisk& operator=(const ScratchDisk&) = delete;

  const std::string& root() const { return root_; }

  /// The bytes on the disk, by native path below the root and without the system layer.
  std::string Bytes(const std::string& name) const {
    std::ifstream file(root_ + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  void Put(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories(std::filesystem::path(root_ + "/" + name).parent_path());
    std::ofstream(root_ + "/" + name, std::ios::binary) << bytes;
  }
  bool Has(const std::string& name) const { return std::filesystem::exists(root_ + "/" + name); }

 private:
  std::string root_;
};

}  // namespace doubles
