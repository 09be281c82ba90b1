#pragma once

#include <string>

namespace bench {

/// Making a backup. `subject` is the program that runs one service by itself.
void printBackupRows(const std::string& subject);

}  // namespace bench
