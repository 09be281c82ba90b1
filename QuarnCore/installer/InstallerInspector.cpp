#include "QuarnCore/installer/InstallerInspector.h"

#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/installer/ContainedItemScanner.h"
#include "QuarnCore/installer/DiskImageMounter.h"
#include "QuarnCore/installer/ZipExpander.h"

namespace quarn {
namespace {

using Items = std::vector<InstallableItem>;

TrustSummary status(const std::string& word) {
  return {.status = word, .details = {}};
}

InstallerInspection failed(const InstallerSource& source, InstallerKind kind, const LocalizedError& error) {
  return {.sourcePath = source.given,
          .kind = kind,
          .items = {},
          .warnings = {error.localizedDescription()},
          .trust = status("inspect-failed")};
}

InstallerInspection opened(const InstallerSource& source, InstallerKind kind, Items items,
                           const std::string& word) {
  InstallerInspection inspection{source.given, kind, std::move(items), {}, status(word)};
  if (inspection.items.empty()) inspection.warnings = {"No .app or .pkg found."};
  return inspection;
}

InstallerInspection unsupported(const InstallerSource& source, InstallerKind kind) {
  return {source.given, kind, {}, {"Unsupported source type."}, status("unsupported")};
}

void append(Items& items, Items more) {
  for (InstallableItem& item : more) items.push_back(std::move(item));
}

}  // namespace

InstallerInspection AppSourceInspector::inspect(const ReadOnlyPlatform& platform,
                                                const InstallerSource& source) {
  InstallerInspection inspection{source.given,
                                 InstallerKind::app,
                                 {ContainedItemScanner::itemAt(platform, source.path, InstallerKind::app)},
                                 {},
                                 status("app-bundle")};
  const auto entry = AppScanner::metadataEntry(platform, source.path);
  if (entry && entry->hasSystemExtension)
    inspection.warnings = {"App has system extensions; externalizing may break it."};
  return inspection;
}

InstallerInspection DmgSourceInspector::inspect(const ReadOnlyPlatform& platform,
                                                const InstallerSource& source) {
  try {
    const DiskImageMounter::Attached image(platform, source.path);
    Items items;
    for (const Path& mountPoint : image.mountPoints())
      append(items, ContainedItemScanner::scan(platform, mountPoint));
    image.requireAttached();
    return opened(source, InstallerKind::dmg, std::move(items), "disk-image");
  } catch (const LocalizedError& error) {
    return failed(source, InstallerKind::dmg, error);
  }
}

InstallerInspection ZipSourceInspector::inspect(const ReadOnlyPlatform& platform,
                                                TemporaryFolders& temporaryFolders,
                                                const InstallerSource& source) {
  try {
    const Path folder = ZipExpander::expand(platform, temporaryFolders, source.path);
    Items items = ContainedItemScanner::scan(platform, folder);
    temporaryFolders.setAside(folder, "zip-inspect");
    return opened(source, InstallerKind::zip, std::move(items), "zip-archive");
  } catch (const LocalizedError& error) {
    return failed(source, InstallerKind::zip, error);
  }
}

InstallerInspection PkgSourceInspector::inspect(const ReadOnlyPlatform& platform,
                                                const InstallerSource& source) {
  const InstallerKind kind = InstallerKinds::detect(platform, source.path);
  InstallerInspection inspection{source.given,
                                 kind,
                                 {ContainedItemScanner::itemAt(platform, source.path, kind)},
                                 {},
                                 PackageTrustInspector::inspect(platform, source.path)};
  const TrustSummary& trust = inspection.trust;
  auto& warnings = inspection.warnings;
  if (!trust.isTrusted()) warnings.emplace_back("Package signature is not trusted.");
  if (trust.hasScripts) warnings.emplace_back("Package contains install scripts.");
  if (trust.hasPrivilegedPayload) warnings.emplace_back("Package may install privileged files.");
  return inspection;
}

InstallerInspection ScriptSourceInspector::inspect(const ReadOnlyPlatform& platform,
                                                   const InstallerSource& source) {
  InstallerInspection inspection{source.given,
                                 InstallerKind::script,
                                 {ContainedItemScanner::itemAt(platform, source.path, InstallerKind::script)},
                                 {"Shell script — runs arbitrary code with sudo."},
                                 ScriptTrustInspector::inspect(platform, source.path)};
  if (inspection.trust.hasPrivilegedPayload)
    inspection.warnings.emplace_back("Script references system paths (/Applications, /Library, ~).");
  return inspection;
}

InstallerInspection InstallerInspector::inspect(const ReadOnlyPlatform& platform,
                                                TemporaryFolders& temporaryFolders,
                                                const InstallerSource& source) {
  const InstallerKind kind = InstallerKinds::detect(platform, source.path);
  if (InstallerKinds::isSpecial(platform, source.path)) return unsupported(source, kind);
  switch (kind) {
    case InstallerKind::app:
      return AppSourceInspector::inspect(platform, source);
    case InstallerKind::dmg:
      return DmgSourceInspector::inspect(platform, source);
    case InstallerKind::zip:
      return ZipSourceInspector::inspect(platform, temporaryFolders, source);
    case InstallerKind::pkg:
    case InstallerKind::mpkg:
      return PkgSourceInspector::inspect(platform, source);
    case InstallerKind::script:
      return ScriptSourceInspector::inspect(platform, source);
    case InstallerKind::unknown:
      break;
  }
  return unsupported(source, kind);
}

}  // namespace quarn
