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
};

}  // namespace quarn
