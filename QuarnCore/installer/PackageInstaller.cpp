#include "QuarnCore/installer/PackageInstaller.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>

#include "Platform/Text.h"
#include "Platform/UUID.h"
#include "QuarnCore/discovery/ProtectedPlaces.h"
#include "QuarnCore/foundation/CommandRunner.h"
#include "QuarnCore/foundation/FileStash.h"
#include "QuarnCore/foundation/TemporaryFolders.h"
#include "QuarnCore/foundation/Turn.h"
#include "QuarnCore/installer/Gantrix.h"
#include "QuarnCore/installer/InstallAction.h"
#include "QuarnCore/installer/InstallerError.h"
#include "QuarnCore/move/MountPoints.h"

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
  return copy.extension() == "app" && !sighting.failure &&
         sighting.leadsTo.text().starts_with(otherVolumes) &&
         !ProtectedPlaces(platform).isOneOrAroundOne(sighting) && MountPoints::areNoneInside(platform, copy);
}

/// A link that was removed, and the copy that it led to, which waits under a hidden name until it is known
/// whether the package was installed: if not, it is the only copy.
class RoomMade {
 public:
  /// Returns nothing, with nothing changed, if one of the two can't be moved.
  static std::optional<RoomMade> by(Platform& platform, const Path& link, const std::string& text) {
    RoomMade room(link, text);
    const bool isThere = platform.files.exists(room.copy_);
    if (isThere && !platform.files.rename(room.copy_, room.aside_).asOptional().value_or(false))
      return std::nullopt;
    if (platform.files.removeSymbolicLink(link)) return room;
    if (isThere) platform.files.rename(room.aside_, room.copy_).orIgnore();
    return std::nullopt;
  }

  void putBack(Platform& platform) const {
    platform.files.rename(aside_, copy_).orIgnore();
    platform.files.createSymbolicLink(link_, text_).orIgnore();
  }
  void discard(Platform& platform) const {
    // Under its own name in the Trash.
    const bool isBack = platform.files.rename(aside_, copy_).asOptional().value_or(false);
    FileStash::moveAside(platform, isBack ? copy_ : aside_, "pkg-install");
  }

 private:
  RoomMade(const Path& link, const std::string& text)
      : link_(link),
        text_(text),
        copy_(text),
        aside_(copy_.parent().appending(".quarn-replaced-" + UUID::make().substr(0, 8))) {}

  Path link_;
  std::string text_;
  Path copy_;
  Path aside_;
};

void removeForGood(const ReadOnlyPlatform& platform, const Path& link, const std::string& copy) {
  const std::string gantrix = Gantrix::path(platform).text();
  CommandRunner::run(platform, gantrix, {"rm", "-f", link.text()}, secondsToRemoveLink);
  CommandRunner::run(platform, gantrix, {"rm", "-rf", copy}, secondsToRemoveCopy);
}

/// Returns whether a link makes room, which is done then.
bool makesRoom(Platform& platform, const Path& link, const std::string& text, bool useGantrix,
               std::vector<RoomMade>& rooms) {
  if (!mayMakeRoom(platform, Path(text))) return false;
  if (useGantrix) {
    removeForGood(platform, link, text);
    return true;
  }
  auto room = RoomMade::by(platform, link, text);
  if (!room) return false;
  rooms.push_back(*std::move(room));
  return true;
}

std::vector<RoomMade> clearBlockingSymlinks(Platform& platform, const Path& package, bool useGantrix,
                                            const InstallerRunReporter& reporter) {
  std::vector<RoomMade> rooms;
  for (const Path& target : pkgAppTargets(platform, package)) {
    const auto text = platform.files.readSymbolicLink(target);
    if (!text || !text->starts_with(otherVolumes)) continue;
    const bool isCleared = makesRoom(platform, target, *text, useGantrix, rooms);
    reporter.log(InstallAction::line(isCleared ? "pre-install-clear-symlink" : "pre-install-keep-symlink",
                                     {target.text(), "-> " + *text}));
  }
  return rooms;
}

CommandResult runInstaller(const ReadOnlyPlatform& platform, const Path& package, bool useGantrix,
                           const InstallerRunReporter& reporter) {
  const std::string executable = useGantrix ? Gantrix::path(platform).text() : "/usr/sbin/installer";
  std::vector<std::string> arguments = {"-pkg", package.text(), "-target", "/"};
  if (useGantrix) arguments.insert(arguments.begin(), "installer");
  reporter.log(InstallAction::line("run-pkg", {executable, package.text()}));
  return CommandRunner::run(platform, executable, arguments);
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
  const Turn turn(platform, reporter.waiting);
  const auto rooms = clearBlockingSymlinks(platform, package, useGantrix, reporter);
  const CommandResult result = runInstaller(platform, package, useGantrix, reporter);
  for (const RoomMade& room : rooms) result.succeeded() ? room.discard(platform) : room.putBack(platform);
  if (!result.succeeded())
    throw InstallerError::ofTool("pkg-install", result.status, result.standardError + result.standardOutput);
  const std::string action = InstallAction::installedPackage(package);
  reporter.log(action);
  return action;
}

}  // namespace quarn::PackageInstaller
