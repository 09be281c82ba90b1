#pragma once

#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// How far a source of software can be trusted.
struct TrustSummary {
  /// "trusted", "untrusted" or "untrusted-script"; whoever inspects other sources adds words of its own.
  std::string status;
  std::vector<std::string> details;   ///< lines that explain the status; may be empty
  bool hasScripts = false;            ///< a package carries install scripts; a script isn't empty
  bool hasPrivilegedPayload = false;  ///< it may write to the system's own places
  bool isTrusted() const { return status == "trusted"; }
  bool operator==(const TrustSummary&) const = default;
};

/// Asks `pkgutil` and `xar` about a package. Never throws: a package that can't be looked into is untrusted
/// and seems to hold nothing.
///
/// The status rests on the words of `pkgutil` alone, whatever its exit status: "Status: signed", or a line
/// with the letters "trusted" in it, even in "untrusted". What is inside rests on the names in the archive,
/// and not on those in its compressed payload.
namespace PackageTrustInspector {
TrustSummary inspect(const ReadOnlyPlatform& platform, const Path& package);
}  // namespace PackageTrustInspector

/// Looks into a script for the places that it names. A script is never trusted. Never throws: one that can't
/// be read, or isn't UTF-8, counts as empty.
namespace ScriptTrustInspector {
TrustSummary inspect(const ReadOnlyPlatform& platform, const Path& script);
}  // namespace ScriptTrustInspector

}  // namespace quarn
