#pragma once

#include <optional>
#include <string>

namespace quarn {

/// The values from which an application's names and loose data are derived.
struct AppIdentity {
  std::string bundlePath;
  std::string displayName;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> executableName;
  bool operator==(const AppIdentity&) const = default;
};

namespace Slug {
/// The short lower-case word by which an application's loose data is found: its executable's name,
/// else its bundle's without the extension, else its display name. Blanks and punctuation stay.
std::string derive(const AppIdentity& identity);
}  // namespace Slug

}  // namespace quarn
