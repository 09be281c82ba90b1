#pragma once

#include <optional>
#include <string>

namespace quarn {

/// The values from which the names of an application's own data are derived.
struct AppIdentity {
  std::string bundlePath;
  std::string displayName;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> executableName;
  bool operator==(const AppIdentity&) const = default;
};

namespace Slug {
/// Returns the slug, the short lower-case word by which an application's own files in the home folder are
/// found: the name of its executable, else of its bundle without the extension, else its display name. Spaces
/// and punctuation are kept.
std::string derive(const AppIdentity& identity);
}  // namespace Slug

}  // namespace quarn
