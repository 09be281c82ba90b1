#include "QuarnCLI/Command.h"

#include <algorithm>

namespace quarn {

const Flag* Command::flag(std::string_view name) const {
  const auto found =
      std::find_if(flags.begin(), flags.end(), [name](const Flag& flag) { return flag.name == name; });
  return found == flags.end() ? nullptr : &*found;
}

}  // namespace quarn
