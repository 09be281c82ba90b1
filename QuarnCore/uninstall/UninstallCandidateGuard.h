#pragma once

#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/Sighting.h"
#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/UninstallCandidate.h"

namespace quarn {

/// Tells which paths an uninstall may take. Names in a property list, texts in launchers and links, and
/// records may have been written by anyone. It only looks, and knows the places as they were when it was
/// made.
class UninstallCandidateGuard {
 public:
  explicit UninstallCandidateGuard(const ReadOnlyPlatform& platform);

  /// Returns whether a path is that of a bundle of an application, whatever is there.
  static bool isBundle(const Path& path);

  /// Returns whether an item may go. No volume, home folder, folder for applications, Trash or other place
  /// that is never moved may, nor a record, a backup or what this tool has moved aside, nor a part of the
  /// system, nor what has a path that isn't UTF-8 and so can't be recorded. Links on the
  /// way to the item are resolved first; the item itself may be a link.
  bool allows(const Path& item) const;
  /// Returns whether an item to which a link or a launcher leads may go as an application: only a bundle.
  bool allowsTarget(const Path& item) const;
  /// Returns whether a candidate for uninstalling an application may go, by the rule for what it is.
  bool allows(const UninstallCandidate& candidate, const AppRecord& app) const;

 private:
  bool allowsInstallerSession(const Path& item) const;
  bool isPartOfSystem(const Sighting& item) const;

  ReadOnlyPlatform platform_;
  ProtectedPlaces protected_;
  Sighting trash_;
};

}  // namespace quarn
