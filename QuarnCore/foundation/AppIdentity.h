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

}  // namespace quarn
