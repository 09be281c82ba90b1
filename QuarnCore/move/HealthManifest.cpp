#include "QuarnCore/move/HealthManifest.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/foundation/StoredJson.h"

namespace quarn {

template <>
inline constexpr auto storedKeys<HealthManifestEntry> = std::tuple{
    StoredKey{"sourcePath", &HealthManifestEntry::sourcePath},
    StoredKey{"destinationPath", &HealthManifestEntry::destinationPath},
    StoredKey{"bundleIdentifier", &HealthManifestEntry::bundleIdentifier},
    StoredKey{"sizeBytes", &HealthManifestEntry::sizeBytes},
    StoredKey{"movedAt", &HealthManifestEntry::movedAt},
};

namespace HealthManifest {
namespace {

using Entries = std::vector<HealthManifestEntry>;

void write(Platform& platform, const Entries& entries) {
  const auto text = StoredJson::write(entries, StoredJson::Layout::pretty, DateForm::iso8601);
  if (!text) return;
  const Path file = fileURL(platform.places);
  platform.files.createFolder(file.parent()).orIgnore();
  platform.files.writeAtomically(file, *text).orIgnore();
}

Entries without(const std::string& sourcePath, Entries entries) {
  std::erase_if(entries, [&](const auto& entry) { return Text::equal(entry.sourcePath, sourcePath); });
  return entries;
}

}  // namespace

Path fileURL(const Places& places) {
  return AppStorageNames::supportRoot(places).appending(filename);
}

Entries load(const ReadOnlyPlatform& platform) {
  const auto text = platform.files.read(fileURL(platform.places));
  if (!text) return {};
  return StoredJson::read<Entries>(*text, DateForm::iso8601).valueOr({});
}

void record(Platform& platform, const HealthManifestEntry& entry) {
  Entries entries = without(entry.sourcePath, load(platform));
  entries.push_back(entry);
  write(platform, entries);
}

void forget(Platform& platform, const std::string& sourcePath) {
  const Entries entries = load(platform);
  const Entries kept = without(sourcePath, entries);
  if (kept.size() != entries.size()) write(platform, kept);
}

}  // namespace HealthManifest
}  // namespace quarn
