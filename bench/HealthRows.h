#pragma once

#include <string>

namespace bench {

/// Prints the rows on the check of health. Needs a room in which nothing has been moved yet, and leaves it
/// so.
void printHealthRows(const std::string& subject);

}  // namespace bench
