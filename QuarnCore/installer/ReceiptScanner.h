#pragma once

#include <set>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// The identifiers of the installed packages at one moment. It is never stored.
struct ReceiptSnapshot {
  std::set<std::string> packageIDs;
  bool isKnown = true;  ///< false if nobody could be asked
  bool operator==(const ReceiptSnapshot&) const = default;
};

namespace ReceiptScanner {

/// Asks `pkgutil`, without a limit of time. What it prints counts whatever its exit status; if it can't be
/// started, or its output isn't UTF-8, the snapshot is empty, and unknown if the tool failed as well. Never
/// throws.
ReceiptSnapshot capture(const ReadOnlyPlatform& platform);

/// Returns the identifiers of `after` that are not in `before`, sorted byte by byte; none if `before` is
/// unknown: receipts of others must not pass for new ones.
std::vector<std::string> added(const ReceiptSnapshot& before, const ReceiptSnapshot& after);

}  // namespace ReceiptScanner
}  // namespace quarn
