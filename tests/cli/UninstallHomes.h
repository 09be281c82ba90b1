#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Random home folders for uninstalling: one application, and hundreds of names that look like its own.
namespace homes {

using Lines = std::vector<std::string>;

/// What was made, as whoever reads it correctly must find it.
struct Home {
  std::uint64_t seed = 0;
  std::string bundle;   ///< its path
  std::string operand;  ///< how it is typed, in the folder `folder`
  std::string folder;
  bool mayBeRefused = false;  ///< for its path: nothing may change then

  // What the property list says; absent too where it can't be read, or says it by something else than a text.
  std::optional<std::string> identifier;
  std::optional<std::string> listedName;  ///< what people are shown, if it isn't empty
  std::optional<std::string> executable;

  std::optional<std::string> target;  ///< where the link or the launcher leads, as it is stored there
  bool isLink = false;
  Lines flags;
  Lines mounts;  ///< the volumes that are mounted in it
};

/// Empties every place, and makes the home of this seed.
Home make(std::uint64_t seed);
/// Takes its volumes away; before the next one is made.
void unmount(const Home& home);

/// In which names stand that are like those of the application.
const Lines& folders();

}  // namespace homes
