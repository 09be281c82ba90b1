#pragma once

#include "tests/cli/UninstallHomes.h"
#include "tests/cli/UninstallNames.h"
#include "tests/cli/UninstallPlists.h"

namespace homes {

inline const std::string otherApplication = "/Applications/Other.app";

/// What was written, be it read correctly or not at all.
struct Application {
  std::string name;  ///< of the bundle, without its extension
  plists::Texts texts;
};

/// Makes the application of a home: a bundle, a link or a launcher somewhere, with a list that may be broken.
Application makeApplication(Dice& dice, Home& home);
/// What its data could be called.
Lines wordsOf(const Application& application);

}  // namespace homes
