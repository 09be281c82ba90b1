#pragma once

#include <string>
#include <string_view>

/// The names in a backup don't show what was backed up: the product's own word is taken out of them.
namespace quarn::BackupNames {

/// Returns the name under which a source is copied, given its own.
std::string ofSource(std::string_view name);
/// Returns the name of an item below it.
std::string sanitized(std::string_view name);

}  // namespace quarn::BackupNames
