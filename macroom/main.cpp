#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include "DriveCommands.h"
#include "Keeper.h"
#include "Namespaces.h"
#include "Options.h"
#include "Proot.h"
#include "RoomTree.h"
#include "Supervisor.h"

namespace {

using namespace quarn::room;

constexpr int noRoom = 125;

std::vector<RoomKind> kinds(const Options& options) {
  const std::string executable = std::filesystem::read_symlink("/proc/self/exe").string();
  std::vector<RoomKind> all;
  if (!options.forceProot) all = Namespaces::kinds(options, executable);
  all.push_back(Proot::kind(options, executable));
  return all;
}

int run(const Options& options) {
  // The links of the outer room would lead into the inner one.
  if (std::filesystem::exists(hostInRoom)) throw std::runtime_error("a room cannot be made inside a room");
  std::string reasons;
  for (const RoomKind& kind : kinds(options)) {
    const Supervisor::Outcome outcome = Supervisor::run(kind);
    if (outcome.entered) return outcome.status;
    reasons += (reasons.empty() ? "" : "; ") + kind.name + ": " + outcome.reason;
  }
  std::cerr << "quarn-room: no room can be made here (" << reasons
            << "); installing proot (apt-get install proot) or allowing user namespaces helps\n";
  return noRoom;
}

}  // namespace

int main(int count, char** words) {
  const std::vector<std::string> arguments(words + 1, words + count);
  try {
    if (words[0] == std::string(innerKeeper)) return Keeper::keepInside(arguments);
    if (auto status = DriveCommands::run(std::filesystem::path(words[0]).filename().string(), arguments))
      return *status;
    const Options options = Options::parse(arguments);
    if (options.help) {
      std::cout << Options::usage;
      return 0;
    }
    return run(options);
  } catch (const std::exception& error) {
    std::cerr << "quarn-room: " << error.what() << "\n";
    return noRoom;
  }
}
