#pragma once

#include <string>

namespace bench {

/// Prints the figures of `quarn uninstall`, which have limits of their own and no rival that takes turns.
void printUninstallFigures(const std::string& subject);

}  // namespace bench
