#include "QuarnCLI/CurrentFolder.h"

#include "QuarnCLI/CLIError.h"

namespace quarn {

Path CurrentFolder::required(const ReadOnlyPlatform& platform) {
  const Path current = platform.places.currentFolder();
  // A folder that has been removed has the path "/", which isn't where the program runs.
  if (current != Path("/")) return current;
  const auto here = platform.files.attributes(Path("."));
  const auto root = platform.files.attributes(current);
  if (!here || !root || here->identity != root->identity)
    throw CLIError("The current folder no longer exists.");
  return current;
}

}  // namespace quarn
