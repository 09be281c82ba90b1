#pragma once

#include <optional>
#include <string>

#include "Platform/Path.h"

namespace quarn {

class Places {
 public:
  virtual ~Places() = default;
  /// Returns the user's home folder.
  virtual Path home() const = 0;
  /// Returns the home folder of a named user, or nothing for an unknown one.
  virtual std::optional<Path> home(const std::string& user) const = 0;
  /// Returns the current folder as a real path without links. On a Mac a folder below /tmp begins with
  /// /private; standardizing drops that.
  virtual Path currentFolder() const = 0;
  /// Returns the path of the running program with every link resolved. Files that are installed with the
  /// program are found from there.
  virtual Path executable() const = 0;
  /// Returns the first argument of the process as it was given: a path, or a bare name that a shell looked
  /// up.
  virtual std::string invokedAs() const = 0;
  /// Returns the folder for the user's temporary files.
  virtual Path temporaryFolder() const = 0;
  /// Returns an environment variable, or nothing if it isn't set.
  virtual std::optional<std::string> environment(const std::string& name) const = 0;
};

}  // namespace quarn
