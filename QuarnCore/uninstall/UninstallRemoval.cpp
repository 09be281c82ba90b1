#include "QuarnCore/uninstall/UninstallRemoval.h"

#include <set>

#include "Platform/CocoaError.h"
#include "Platform/DateText.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/TimedFolder.h"
#include "QuarnCore/installer/PackageReceipts.h"
#include "QuarnCore/move/ChosenVolume.h"
#include "QuarnCore/uninstall/UninstallSessionStore.h"

namespace quarn {
namespace {

/// Makes the folder of the record. Returns its name also where it can't be made; whoever writes the record is
/// told.
std::string claimID(Platform& platform, const Path& root) {
  return TimedFolder::make(platform, root).valueOr(DateText::compactLocal(platform.clock.now()));
}

}  // namespace

UninstallRemoval::UninstallRemoval(Platform& platform, const AppRecord& app, const Candidates& chosen,
                                   const AppUninstallReporter& reporter)
    : platform_(platform),
      chosen_(chosen),
      reporter_(reporter),
      obstacles_(platform, app, chosen),
      root_(AppStorageNames::uninstallSessionRoot(platform.places)),
      session_(AppUninstallSession::begun(app, claimID(platform, root_), platform.clock.now(), false)) {}

AppUninstallSession UninstallRemoval::carryOut() {
  for (const UninstallCandidate& candidate : chosen_) {
    if (candidate.category == UninstallCategory::receipts) {
      forget(candidate.path);
    } else {
      remove(candidate);
    }
  }
  record();
  writeOut();
  return session_;
}

void UninstallRemoval::remove(const UninstallCandidate& candidate) {
  MovedItem& item = session_.movedItems.emplace_back(MovedItem::of(candidate));
  recordSoFar();
  if (const auto why = obstacles_.reasonToStay(candidate)) return reporter_.logKept(item, *why);
  const auto inTrash = platform_.trash.moveToTrash(Path(candidate.path));
  if (!inTrash) return stash(item);
  // The system needn't say where.
  if (!inTrash->text().empty()) item.trashedTo = inTrash->text();
  item.succeeded = true;
  reporter_.logStep("trash", item);
}

void UninstallRemoval::stash(MovedItem& item) {
  const Path path(item.originalPath);
  const Path beside = FileStash::folderBeside(path);
  const auto place = FileStash::moveAside(platform_, path, "uninstall");
  // Aside can also mean the Trash, if it takes at the second attempt what it refused at the first.
  if (place && place->parent() != beside) item.trashedTo = place->text();
  item.stashedTo = beside.text();
  // What was moved is gone, also if that can't be looked up.
  item.succeeded = place || isGone(path);
  if (!item.succeeded) reporter_.warn("“" + item.originalPath + "” is still there.");
  if (place && !item.trashedTo)
    reporter_.warn("The Trash refused “" + item.originalPath + "”. It is in " + place->text() + " now.");
  reporter_.logStep("stash", item);
}

/// What is on a drive that was pulled out isn't gone.
bool UninstallRemoval::isGone(const Path& path) const {
  if (!ChosenVolume::holding(platform_, path.parent())) return false;
  const auto attributes = platform_.files.attributes(path);
  return !attributes && CocoaError::saysMissing(attributes.error());
}

void UninstallRemoval::forget(const std::string& packageID) {
  const CommandResult result = PackageReceipts::forget(platform_, packageID);
  if (!result.succeeded()) {
    const std::string why = Text::trimmingWhitespaceAndNewlines(result.standardError);
    return reporter_.log("forget-receipt-fail\t" + packageID + "\t" + why);
  }
  session_.forgottenReceipts.push_back(packageID);
  reporter_.log("forget-receipt\t" + packageID);
}

void UninstallRemoval::record() const {
  try {
    UninstallSessionStore::save(platform_, session_, root_);
  } catch (const LocalizedError&) {
    reporter_.unrecorded(session_);
    throw;
  }
}

/// A record that can't be written is told of at the end; the items are safe in the Trash meanwhile.
void UninstallRemoval::recordSoFar() const {
  try {
    UninstallSessionStore::save(platform_, session_, root_);
  } catch (const LocalizedError&) {
  }
}

/// After a power cut, too, everything is where the record says.
void UninstallRemoval::writeOut() const {
  platform_.files.flush(root_).orIgnore();
  std::set<std::int32_t> volumes;
  for (const MovedItem& item : session_.movedItems) {
    const Path place(item.trashedTo.value_or(item.stashedTo.value_or(root_.text())));
    const auto attributes = platform_.files.attributes(place);
    if (attributes && volumes.insert(attributes->identity.device).second)
      platform_.files.flush(place).orIgnore();
  }
}

}  // namespace quarn
