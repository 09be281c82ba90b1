#pragma once

#include <optional>
#include <string>

#include "Platform/Path.h"

namespace quarn {

class Places {
 public:
  virtual ~Places() = default;
  /// The user's home folder.
  virtual Path home() const = 0;
  /// The home folder of a named user; absent for an unknown one.
  virtual std::optional<Path> home(const std::string& user) const = 0;
  /// The real path, no link in it; below /tmp of a Mac it begins with /private, which standardizing drops.
  virtual Path currentFolder() const = 0;
  /// The file of the running program, every link to it resolved; what comes with the program is found from
  /// there.
  virtual Path executable() const = 0;
};

}  // namespace quarn
