#include "QuarnCore/uninstall/AppUninstallRunner.h"

#include <algorithm>
#include <chrono>

#include "Platform/DateText.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/PackageReceipts.h"
#include "QuarnCore/uninstall/AppUninstallError.h"
#include "QuarnCore/uninstall/UninstallCandidateGuard.h"
#include "QuarnCore/uninstall/UninstallSessionStore.h"

namespace quarn::AppUninstallRunner {
namespace {

using Candidates = std::vector<UninstallCandidate>;
using SelectedPaths = std::optional<std::set<std::string>>;
using MovedItem = AppUninstallSession::MovedItem;

void requireUninstallable(const ReadOnlyPlatform& platform, const AppRecord& app) {
  if (app.kind == AppRecordKind::systemRisky)
    throw AppUninstallError::refused("Refusing to uninstall system app: " + app.bundlePath);
  const Path bundle(app.bundlePath);
  const UninstallCandidate candidate{.path = app.bundlePath};
  if (const auto why = UninstallCandidateGuard(platform).reasonToStay(candidate, app))
    throw AppUninstallError::refused("Refusing to uninstall: " + *why);
  if (Text::lowercased(bundle.extension()) != "app")
    throw AppUninstallError::refused("Refusing to uninstall: “" + bundle.lastComponent() +
                                     "” isn’t an application.");
}

Candidates chosen(const AppUninstallPlan& plan, const UninstallSelection& selection,
                  const SelectedPaths& selectedPaths) {
  const auto isTaken = [&](const UninstallCandidate& candidate) {
    if (!selectedPaths) return AppUninstallPlanner::effectiveSelected(candidate, plan.app, selection);
    return std::any_of(selectedPaths->begin(), selectedPaths->end(),
                       [&](const std::string& path) { return Text::equal(path, candidate.path); });
  };
  Candidates taken;
  std::copy_if(plan.candidates.begin(), plan.candidates.end(), std::back_inserter(taken), isTaken);
  return taken;
}

std::string step(const char* word, const UninstallCandidate& candidate) {
  return std::string(word) + "\t" + std::string(rawValue(candidate.category)) + "\t" + candidate.path;
}

void logStart(const AppUninstallReporter& reporter, const AppRecord& app, bool dryRun) {
  reporter.log("uninstall-start\t" + app.bundlePath + "\tdry=" + (dryRun ? "true" : "false"));
}

void logEnd(const AppUninstallReporter& reporter, const AppUninstallSession& session) {
  reporter.log("uninstall-done\titems=" + std::to_string(session.movedItems.size()) +
               "\treceipts=" + std::to_string(session.forgottenReceipts.size()));
}

AppUninstallSession sessionFor(const AppRecord& app, const std::string& id, Moment now, bool dryRun) {
  return {.id = id,
          .appPath = app.bundlePath,
          .appName = app.displayName,
          .bundleIdentifier = app.bundleIdentifier,
          .createdAt = now,
          .movedItems = {},
          .forgottenReceipts = {},
          .dryRun = dryRun};
}

MovedItem itemFor(const UninstallCandidate& candidate) {
  return {.originalPath = candidate.path,
          .category = candidate.category,
          .sizeBytes = candidate.sizeBytes,
          .trashedTo = std::nullopt,
          .stashedTo = std::nullopt,
          .succeeded = false,
          .error = std::nullopt};
}

/// The identifier is a time in whole seconds. A run in the second of an earlier one waits for the next, so
/// that it doesn't take the place of that one's record.
std::string unusedID(Platform& platform, const Path& root) {
  using namespace std::chrono_literals;
  constexpr int attempts = 3;
  std::string id = DateText::compactLocal(platform.clock.now());
  for (int i = 1; i < attempts && platform.files.attributes(root.appending(id)); ++i) {
    const auto sinceSecond = platform.clock.now().time_since_epoch() % 1s;
    platform.clock.sleep(1s - std::chrono::duration_cast<std::chrono::milliseconds>(sinceSecond));
    id = DateText::compactLocal(platform.clock.now());
  }
  return id;
}

/// Carries one plan out.
class Removal {
 public:
  Removal(Platform& platform, const AppRecord& app, const AppUninstallReporter& reporter)
      : platform_(platform),
        app_(app),
        reporter_(reporter),
        guard_(platform),
        root_(AppStorageNames::uninstallSessionRoot(platform.places)),
        session_(sessionFor(app, unusedID(platform, root_), platform.clock.now(), false)) {}

  AppUninstallSession carryOut(const Candidates& candidates) {
    for (const UninstallCandidate& candidate : candidates) {
      if (candidate.category == UninstallCategory::receipts) {
        forget(candidate.path);
      } else {
        remove(candidate);
      }
    }
    UninstallSessionStore::save(platform_, session_, root_);
    writeOut();
    return session_;
  }

 private:
  void remove(const UninstallCandidate& candidate) {
    MovedItem& item = session_.movedItems.emplace_back(itemFor(candidate));
    recordSoFar();
    if (const auto why = guard_.reasonToStay(candidate, app_)) {
      reporter_.log(step("keep", candidate) + "\t" + *why);
    } else if (const auto inTrash = platform_.trash.moveToTrash(Path(candidate.path))) {
      item.trashedTo = inTrash->text();
      item.succeeded = true;
      reporter_.log(step("trash", candidate));
    } else {
      stash(candidate, item);
    }
  }

  void stash(const UninstallCandidate& candidate, MovedItem& item) {
    const Path path(candidate.path);
    const Path beside = FileStash::folderBeside(path);
    const auto place = FileStash::moveAside(platform_, path, "uninstall");
    // Aside can also mean the Trash, if it takes at the second attempt what it refused at the first.
    if (place && place->parent() != beside) item.trashedTo = place->text();
    item.stashedTo = beside.text();
    // What was moved is gone, also if that can't be looked up.
    item.succeeded = place || isGone(path);
    reporter_.log(step("stash", candidate));
  }

  bool isGone(const Path& path) const {
    const auto attributes = platform_.files.attributes(path);
    return !attributes && attributes.error().code == CocoaErrorCode::fileReadNoSuchFile;
  }

  void forget(const std::string& packageID) {
    const CommandResult result = PackageReceipts::forget(platform_, packageID);
    if (!result.succeeded()) {
      const std::string why = Text::trimmingWhitespaceAndNewlines(result.standardError);
      return reporter_.log("forget-receipt-fail\t" + packageID + "\t" + why);
    }
    session_.forgottenReceipts.push_back(packageID);
    reporter_.log("forget-receipt\t" + packageID);
  }

  /// A record that can't be written is told of at the end; the items are safe in the Trash meanwhile.
  void recordSoFar() const {
    try {
      UninstallSessionStore::save(platform_, session_, root_);
    } catch (const LocalizedError&) {
    }
  }

  /// After a power cut, too, everything is where the record says.
  void writeOut() const {
    platform_.files.flush(root_).orIgnore();
    std::set<std::int32_t> volumes;
    for (const MovedItem& item : session_.movedItems) {
      const Path place(item.trashedTo.value_or(item.stashedTo.value_or(root_.text())));
      const auto attributes = platform_.files.attributes(place);
      if (attributes && volumes.insert(attributes->identity.device).second)
        platform_.files.flush(place).orIgnore();
    }
  }

  Platform& platform_;
  const AppRecord& app_;
  const AppUninstallReporter& reporter_;
  UninstallCandidateGuard guard_;
  Path root_;
  AppUninstallSession session_;
};

}  // namespace

AppUninstallSession run(Platform& platform, const AppUninstallPlan& plan, const UninstallSelection& selection,
                        bool dryRun, const SelectedPaths& selectedPaths,
                        const AppUninstallReporter& reporter) {
  if (dryRun) return rehearse(platform, plan, selection, selectedPaths, reporter);
  const Turn turn(platform);
  requireUninstallable(platform, plan.app);
  logStart(reporter, plan.app, false);
  Removal removal(platform, plan.app, reporter);
  const auto session = removal.carryOut(chosen(plan, selection, selectedPaths));
  reporter.log("session\t" + session.id);
  logEnd(reporter, session);
  return session;
}

AppUninstallSession rehearse(const ReadOnlyPlatform& platform, const AppUninstallPlan& plan,
                             const UninstallSelection& selection, const SelectedPaths& selectedPaths,
                             const AppUninstallReporter& reporter) {
  requireUninstallable(platform, plan.app);
  logStart(reporter, plan.app, true);
  const Moment now = platform.clock.now();
  AppUninstallSession session = sessionFor(plan.app, DateText::compactLocal(now), now, true);
  for (const UninstallCandidate& candidate : chosen(plan, selection, selectedPaths)) {
    if (candidate.category == UninstallCategory::receipts) {
      session.forgottenReceipts.push_back(candidate.path);
      reporter.log("dry-forget-receipt\t" + candidate.path);
    } else {
      session.movedItems.push_back(itemFor(candidate));
      session.movedItems.back().succeeded = true;
      reporter.log(step("dry-trash", candidate));
    }
  }
  logEnd(reporter, session);
  return session;
}

}  // namespace quarn::AppUninstallRunner
