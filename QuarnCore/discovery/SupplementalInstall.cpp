#include "QuarnCore/discovery/SupplementalInstall.h"

#include "Platform/Text.h"

namespace quarn::SupplementalInstall {

bool matches(const Places& places, const std::string& bundlePath) {
  const std::string userApplications = places.home().appending("Applications").text() + "/";
  for (const std::string& folder :
       {std::string("/Applications/"), std::string("/System/Applications"), userApplications}) {
    if (Text::hasPrefix(bundlePath, folder)) return false;
  }
  return bundlePath.find("/Library/Application Support/") != std::string::npos;
}

}  // namespace quarn::SupplementalInstall
