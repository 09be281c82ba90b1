#include "QuarnCore/installer/ReceiptScanner.h"

#include <algorithm>
#include <iterator>

#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::ReceiptScanner {

ReceiptSnapshot capture(const ReadOnlyPlatform& platform) {
  const CommandResult result = CommandRunner::run(platform, "/usr/sbin/pkgutil", {"--pkgs"});
  const auto lines = result.lines();
  return {{lines.begin(), lines.end()}, result.succeeded() || !lines.empty()};
}

std::vector<std::string> added(const ReceiptSnapshot& before, const ReceiptSnapshot& after) {
  if (!before.isKnown) return {};
  std::vector<std::string> found;
  std::set_difference(after.packageIDs.begin(), after.packageIDs.end(), before.packageIDs.begin(),
                      before.packageIDs.end(), std::back_inserter(found));
  return found;
}

}  // namespace quarn::ReceiptScanner
