#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"

/// Asks `codesign` and `stapler` about a bundle's code signature and notarization ticket.
namespace quarn::CodesignVerifier {

struct Result {
  bool isSigned = false;          ///< the bundle has a code signature, good or not
  bool codesignOK = false;        ///< `codesign` accepts it
  std::optional<bool> staplerOK;  ///< the stapled ticket is valid; absent if there is none to validate
  std::string codesignDetail;     ///< what `codesign` printed, trimmed
  std::string staplerDetail;      ///< what `stapler` printed, trimmed

  bool passed() const { return codesignOK && staplerOK.value_or(true); }
  bool operator==(const Result&) const = default;
};

/// Never throws. Each of the three tools that it runs has 20 seconds. A bundle whose verification takes
/// longer counts as not examined: unsigned, and with nothing against it.
///
/// `stapler` needs the network and Apple's developer tools. Without them `staplerOK` is false for every
/// bundle.
Result verify(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::CodesignVerifier
