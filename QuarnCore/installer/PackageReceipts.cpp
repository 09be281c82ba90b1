#include "QuarnCore/installer/PackageReceipts.h"

namespace quarn {

CommandResult PackageReceipts::forget(Platform& platform, const std::string& packageID) {
  if (packageID.empty() || packageID.front() == '-')
    return {1, "", "“" + packageID + "” can’t be the identifier of a package.", false};
  return CommandRunner::run(platform, "/usr/sbin/pkgutil", {"--forget", packageID});
}

}  // namespace quarn
