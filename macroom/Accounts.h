#pragma once

#include <string>

namespace quarn::room::Accounts {

/// The host's table, led by a line that gives `uid` the name "me" and the home /Users/me; the host's own
/// lines of that number or name are left out. A table that cannot be read counts as empty.
std::string passwd(const std::string& hostTable, unsigned uid, unsigned gid);

/// Likewise, with "staff" for `gid`.
std::string group(const std::string& hostTable, unsigned gid);

}  // namespace quarn::room::Accounts
