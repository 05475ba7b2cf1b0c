#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/paths.h"
#include "workbench/console/console.h"
#include "workbench/services/json_file.h"

namespace {

using namespace workbench;

struct CommandLine {
  std::string project = ".";
  std::string state;
  std::string component;
  std::string script;
  std::vector<std::string> lines;
  std::string program;
  bool keepGoing = false;
};

/// Settings and sessions lie where the desktop's conventions say, below "qal-workbench".
std::string DefaultState() {
  if (const char* given = std::getenv("XDG_STATE_HOME"); given && given[0] == '/') {
    return std::string(given) + "/qal-workbench";
  }
  const char* home = std::getenv("HOME");
  return home && home[0] == '/' ? std::string(home) + "/.local/state/qal-workbench" : std::string();
}

std::string Product(const std::string& nativePath) {
  if (nativePath.empty()) return {};
  return platform::FromNative(std::filesystem::absolute(nativePath).lexically_normal().string());
}

std::unique_ptr<LineSource> OpenLines(const CommandLine& given, const std::string& state) {
  std::unique_ptr<std::istream> stream;
  if (given.script == "-") {
    stream = std::make_unique<std::istream>(std::cin.rdbuf());
  } else if (!given.script.empty()) {
    auto file = std::make_unique<std::ifstream>(given.script, std::ios::binary);
    if (!*file || std::filesystem::is_directory(given.script)) {
      throw std::runtime_error("the script " + given.script + " cannot be read");
    }
    stream = std::move(file);
  } else if (given.lines.empty()) {
    if (isatty(STDIN_FILENO) && isatty(STDOUT_FILENO)) {
      const bool keep = !state.empty() && CreateDirectories(state);
      return EditedLines(keep ? platform::ToNative(platform::JoinPath(state, "history")) : std::string());
    }
    stream = std::make_unique<std::istream>(std::cin.rdbuf());
  }
  return ScriptLines(given.lines, std::move(stream));
}

int Work(const CommandLine& given) {
  IdePlaces places;
  places.project = Product(given.project);
  if (!platform::IsDirectory(places.project)) throw std::runtime_error(given.project + " is no directory");
  places.state = Product(given.state.empty() ? DefaultState() : given.state);
  places.component = given.component.empty() ? FindComponent() : Product(given.component);

  const auto lines = OpenLines(given, places.state);
  Console console(*lines, std::cout, {given.keepGoing});
  Ide ide(places, console);
  console.Attach(ide);
  ide.StartComponent();
  if (!given.program.empty()) ide.LoadProgram(Product(given.program));
  return console.Run();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("A reference IDE: runs a firmware image on a simulated target with its coverage component.");
  CommandLine given;
  app.add_option("--project", given.project, "Directory of the project (the current one)")->type_name("DIR");
  app.add_option("--state", given.state, "Directory for settings, sessions and history")->type_name("DIR");
  app.add_option("--component", given.component, "The component's library (the installed one)")
      ->type_name("FILE");
  app.add_option("--script", given.script, "Reads lines from a file; - is the standard input")
      ->type_name("FILE");
  app.add_option("-e", given.lines, "A line to carry out; may be given several times, before the script")
      ->type_name("LINE")
      ->allow_extra_args(false);
  app.add_flag("--keep-going", given.keepGoing,
               "A script goes on after a line that fails; its status is 1 all the same");
  app.add_option("PROGRAM", given.program, "The image to load")->type_name("");
  CLI11_PARSE(app, argc, argv);
  try {
    return Work(given);
  } catch (const std::exception& error) {
    std::cout.flush();
    std::cerr << "qal-workbench: " << error.what() << '\n';
    return 2;
  }
}
