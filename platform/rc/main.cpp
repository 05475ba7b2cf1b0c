#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/rc/resource_source.h"

/// qal-rc DIRECTORY OUTPUT NAMESPACE: compiles the resources that DIRECTORY describes into
/// OUTPUT/string_ids.h (constants in NAMESPACE::strings) and OUTPUT/resource_data.h (data in
/// NAMESPACE::resource_data).
namespace {

using Reader = void (*)(std::string_view, const std::string&, rc::Resources*);
constexpr struct {
  const char* file;
  Reader read;
} kFiles[] = {
    {"strings.txt", rc::ReadStrings},   {"dialogs.txt", rc::ReadDialogs},
    {"menus.txt", rc::ReadMenus},       {"accelerators.txt", rc::ReadAccelerators},
    {"toolbars.txt", rc::ReadToolbars}, {"bitmaps.txt", rc::ReadBitmaps},
};

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  if (!file.flush()) throw rc::SourceError(path + ": cannot be written");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) {
    std::fputs("usage: qal-rc DIRECTORY OUTPUT NAMESPACE\n", stderr);
    return 2;
  }
  const std::string directory = arguments[1];
  const std::string output = arguments[2];
  const std::string name = arguments[3];
  try {
    rc::Resources resources;
    for (const auto& [file, read] : kFiles) {
      const std::string path = directory + "/" + file;
      std::ifstream stream(path, std::ios::binary);
      if (!stream) continue;  // a module need not have resources of every kind
      read(std::string(std::istreambuf_iterator<char>(stream), {}), path, &resources);
    }
    rc::Finish(&resources);
    WriteFile(output + "/string_ids.h", rc::WriteIds(resources, name + "::strings"));
    WriteFile(output + "/resource_data.h", rc::WriteData(resources, name + "::resource_data"));
  } catch (const rc::SourceError& error) {
    std::fprintf(stderr, "qal-rc: %s\n", error.what());
    return 1;
  }
  return 0;
}
