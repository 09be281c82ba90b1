#include "QuarnCore/foundation/AppIdentity.h"

#include "Platform/Path.h"
#include "Platform/Text.h"

namespace quarn {

namespace Slug {
namespace {

std::string chosenName(const AppIdentity& identity) {
  if (identity.executableName && !identity.executableName->empty()) return *identity.executableName;
  const std::string bundleName = Path(identity.bundlePath).nameWithoutExtension();
  return bundleName.empty() ? identity.displayName : bundleName;
}

}  // namespace

std::string derive(const AppIdentity& identity) {
  return Text::lowercased(chosenName(identity));
}
}  // namespace Slug

}  // namespace quarn
