#pragma once

#include <string>

namespace bench {

/// Prints the rows on installing. Needs a room in which nothing has been installed yet, and leaves it so.
void printInstallRows(const std::string& subject);

}  // namespace bench
