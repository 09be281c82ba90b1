#include "QuarnCore/installer/PackageInstaller.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>

#include "Platform/Text.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/TemporaryFolders.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/Gantrix.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerError.h"
#include "QuarnCore/move/MountPoints.h"
#include "QuarnCore/move/MoverError.h"

namespace quarn::PackageInstaller {
namespace {

constexpr double secondsToUnpack = 15;
constexpr double secondsToRemoveLink = 10;
constexpr double secondsToRemoveCopy = 30;
constexpr std::string_view applications = "/Applications/";
constexpr std::string_view otherVolumes = "/Volumes/";

// White space as regular expressions understand it (ICU User Guide, "\s"), beside a quote, "<" and a slash.
constexpr std::array<std::string_view, 27> endsOfNames{
    "\"",     "<",      "/",      "\t",     "\n",     "\v",     "\f",     "\r",     " ",
    "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"};

std::string_view nameAt(std::string_view text) {
  std::size_t end = text.size();
  for (const std::string_view separator : endsOfNames) end = std::min(end, text.find(separator));
  return text.substr(0, end);
}

/// Returns the first "/Applications/<name>.app", with the longest name that ends so.
std::optional<std::string> firstTarget(std::string_view line) {
  constexpr std::string_view extension = ".app";
  for (std::size_t at = line.find(applications); at != std::string_view::npos;
       at = line.find(applications, at + 1)) {
    const std::string_view name = nameAt(line.substr(at + applications.size()));
    const std::size_t dot = name.rfind(extension);
    if (dot != std::string_view::npos && dot > 0)
      return std::string(applications) + std::string(name.substr(0, dot + extension.size()));
  }
  return std::nullopt;
}

/// Collects the texts that describe a package: its own, and those of the packages inside it.
class DescriptionVisitor : public WalkVisitor {
 public:
  DescriptionVisitor(const FileSystem& files, const Path& root) : files_(files), root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    const std::string_view path = item.relativePath();
    if (path != "PackageInfo" && path != "Distribution" && !path.ends_with("/PackageInfo"))
      return WalkStep::proceed;
    const auto bytes = files_.read(root_.appending(path));
    const auto text = bytes ? Text::decodingFile(*bytes) : std::nullopt;
    if (text) descriptions += *text + "\n";
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::string descriptions;

 private:
  const FileSystem& files_;
  const Path root_;
};

/// A package can be installed even if nothing can be read of it.
std::string descriptionsIn(const ReadOnlyPlatform& platform, const Path& package, const Path& folder) {
  const auto unpacked = CommandRunner::run(
      platform, "/usr/bin/xar", {"-xf", package.text(), "-C", folder.text(), "PackageInfo", "Distribution"},
      secondsToUnpack);
  if (unpacked.timedOut) return {};
  DescriptionVisitor visitor(platform.files, folder);
  platform.files.walk(folder, Hidden::included, visitor);
  return visitor.descriptions;
}

std::vector<Path> pkgAppTargets(Platform& platform, const Path& package) {
  TemporaryFolders temporaryFolders(platform);
  try {
    const Path folder = temporaryFolders.make("QuarnPkgInfo-");
    std::vector<Path> targets = targetsNamedIn(descriptionsIn(platform, package, folder));
    temporaryFolders.remove(folder);
    return targets;
  } catch (const PlatformError&) {
    return {};
  }
}

/// A package can name any application, and a link can lead anywhere. Only what is an application of its own
/// on another volume makes room.
bool mayMakeRoom(const ReadOnlyPlatform& platform, const Path& copy) {
  const Sighting sighting = sight(platform.files, copy);
  if (copy.extension() != "app" || !sighting.leadsTo.text().starts_with(otherVolumes) ||
      ProtectedPlaces(platform).isOneOrAroundOne(sighting))
    return false;
  try {
    MountPoints::refuseInside(platform, copy);
    return true;
  } catch (const MoveRefused&) {
    return false;
  }
}

void makeRoom(Platform& platform, const Path& link, const Path& copy, bool useGantrix) {
  if (useGantrix) {
    const std::string gantrix = Gantrix::path(platform).text();
    CommandRunner::run(platform, gantrix, {"rm", "-f", link.text()}, secondsToRemoveLink);
    CommandRunner::run(platform, gantrix, {"rm", "-rf", copy.text()}, secondsToRemoveCopy);
  } else {
    platform.files.removeSymbolicLink(link).orIgnore();
    // Not removed: if the package then can't be installed, this is the only copy.
    FileStash::moveAside(platform, copy, "pkg-install");
  }
}

void clearBlockingSymlinks(Platform& platform, const Path& package, bool useGantrix,
                           const InstallerRunReporter& reporter) {
  const std::vector<Path> targets = pkgAppTargets(platform, package);
  if (targets.empty()) return;
  const Turn turn(platform, reporter.waiting);
  for (const Path& target : targets) {
    const auto text = platform.files.readSymbolicLink(target);
    if (!text || !text->starts_with(otherVolumes)) continue;
    const Path copy(*text);
    const bool makesRoom = mayMakeRoom(platform, copy);
    reporter.log(InstallAction::line(makesRoom ? "pre-install-clear-symlink" : "pre-install-keep-symlink",
                                     {target.text(), "-> " + *text}));
    if (makesRoom) makeRoom(platform, target, copy, useGantrix);
  }
}

}  // namespace

std::vector<Path> targetsNamedIn(std::string_view description) {
  std::set<std::string> targets;
  for (const std::string_view line : Text::nonEmptyLinesOfAnyEnd(description)) {
    if (auto target = firstTarget(line)) targets.insert(*std::move(target));
  }
  return {targets.begin(), targets.end()};
}

std::string install(Platform& platform, const Path& package, bool useGantrix,
                    const InstallerRunReporter& reporter) {
  clearBlockingSymlinks(platform, package, useGantrix, reporter);
  const std::string executable = useGantrix ? Gantrix::path(platform).text() : "/usr/sbin/installer";
  std::vector<std::string> arguments = {"-pkg", package.text(), "-target", "/"};
  if (useGantrix) arguments.insert(arguments.begin(), "installer");
  reporter.log(InstallAction::line("run-pkg", {executable, package.text()}));
  const CommandResult result = CommandRunner::run(platform, executable, arguments);
  if (!result.succeeded())
    throw InstallerError::ofTool("pkg-install", result.status, result.standardError + result.standardOutput);
  const std::string action = InstallAction::installedPackage(package);
  reporter.log(action);
  return action;
}

}  // namespace quarn::PackageInstaller
