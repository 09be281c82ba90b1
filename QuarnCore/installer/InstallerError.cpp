#include "QuarnCore/installer/InstallerError.h"

#include "Platform/CocoaError.h"

namespace quarn::InstallerError {

PlatformError ofTool(const std::string& domain, int status, const std::string& written) {
  if (written.empty()) return CocoaError::ofDomain(domain, status);
  return {domain, status, written};
}

}  // namespace quarn::InstallerError
