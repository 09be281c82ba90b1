#include "QuarnCore/uninstall/AppRecordBuilder.h"

#include "Platform/Text.h"
#include "QuarnCore/discovery/AppScanner.h"
#include "QuarnCore/uninstall/AppClassifier.h"

namespace quarn::AppRecordBuilder {
namespace {

/// The folder's name is the one that people see. The name in the property list counts only if it says more.
std::string displayName(const InfoPlist::Texts& texts, const Path& bundle) {
  const std::string folderName = bundle.nameWithoutExtension();
  const auto name = InfoPlist::name(texts);
  if (!name) return folderName;
  const std::string shown = Text::trimmingWhitespaceAndNewlines(folderName);
  const std::string told = Text::trimmingWhitespaceAndNewlines(*name);
  if (Text::localizedCaseInsensitiveCompare(shown, told) == 0) return shown;
  return Text::characterCount(shown) >= Text::characterCount(told) ? shown : told;
}

std::optional<std::string> linkText(const ReadOnlyPlatform& platform, const Path& bundle,
                                    const Result<FileAttributes>& attributes) {
  if (!attributes || attributes->kind != FileKind::symbolicLink) return std::nullopt;
  return platform.files.readSymbolicLink(bundle).asOptional();
}

/// What these bundles hold beside the application is told once: most have no such folder at all.
void addFlags(const ReadOnlyPlatform& platform, const Path& bundle, AppRecord& record) {
  // The kinds that come last in the judgement already tell whether there is a receipt.
  record.isMacAppStore = record.kind == AppRecordKind::macAppStore ||
                         (record.kind != AppRecordKind::normal && AppFlags::isMacAppStore(platform, bundle));
  if (!platform.files.isFolder(bundle.appending("Contents/Library"))) return;
  record.hasLoginItems = AppFlags::hasLoginItems(platform, bundle);
  record.hasSystemExtension = AppFlags::hasSystemExtension(platform, bundle);
}

}  // namespace

AppRecord build(const ReadOnlyPlatform& platform, const Path& bundle) {
  const auto texts = InfoPlist::read(platform, bundle).value_or(InfoPlist::Texts{});
  const auto attributes = platform.files.attributes(bundle);
  AppRecord record;
  record.id = record.bundlePath = bundle.text();
  record.displayName = displayName(texts, bundle);
  record.bundleIdentifier = InfoPlist::value(texts, "CFBundleIdentifier");
  record.version = InfoPlist::value(texts, "CFBundleShortVersionString");
  record.executableName = InfoPlist::value(texts, "CFBundleExecutable");
  record.developer = AppClassifier::developer(texts);
  record.symlinkTarget = linkText(platform, bundle, attributes);
  record.isSymlink = record.symlinkTarget.has_value();
  if (attributes) record.modifiedAt = attributes->modified;
  const auto classification = AppClassifier::classify(platform, bundle, texts, record.symlinkTarget);
  record.kind = classification.kind;
  record.isQuarnLauncher = classification.isLauncher;
  record.externalTargetPath = classification.externalTarget;
  addFlags(platform, bundle, record);
  if (SupplementalInstall::matches(platform.places, record))
    record.displayName = Slug::supplementalDisplayName(record);
  return record;
}

}  // namespace quarn::AppRecordBuilder
