#include "DriveCommands.h"

#include <cstdlib>
#include <iostream>

#include "Drives.h"
#include "Sys.h"

namespace quarn::room::DriveCommands {

namespace {

int complain(const std::string& text) {
  std::cerr << text << "\n";
  return 64;
}

int plug(const std::vector<std::string>& words, const std::string& kind) {
  const bool wellFormed = words.size() == 2 || (words.size() == 3 && words[2] == "ro");
  const auto request = wellFormed ? DriveRequest::parse(words[0] + "=" + words[1]) : std::nullopt;
  if (!request) return complain("usage: plug NAME SIZE [ro]    (SIZE such as 64m or 2g)");
  Drives::plug({request->name, request->size, words.size() == 3}, kind);
  return 0;
}

int unplug(const std::vector<std::string>& words, const std::string& kind) {
  if (words.size() != 1) return complain("usage: unplug NAME");
  Drives::unplug(words[0], kind);
  return 0;
}

}  // namespace

std::optional<int> run(const std::string& name, const std::vector<std::string>& arguments) {
  if (name != "plug" && name != "unplug") return std::nullopt;
  const char* kind = std::getenv("QUARN_ROOM");
  if (kind == nullptr) return complain(name + ": works inside a room only");
  try {
    return name == "plug" ? plug(arguments, kind) : unplug(arguments, kind);
  } catch (const RoomError& error) {
    std::cerr << name << ": " << error.what() << "\n";
    return 1;
  }
}

}  // namespace quarn::room::DriveCommands
