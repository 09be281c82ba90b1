#include "QuarnCore/move/HealthManifest.h"

#include "Platform/DateText.h"
#include "Platform/Json.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"

namespace quarn::HealthManifest {
namespace {

using Entries = std::vector<HealthManifestEntry>;

Json encode(const HealthManifestEntry& entry) {
  Json::Object object = {{"destinationPath", entry.destinationPath},
                         {"movedAt", DateText::iso8601(entry.movedAt)},
                         {"sizeBytes", entry.sizeBytes},
                         {"sourcePath", entry.sourcePath}};
  if (entry.bundleIdentifier) object.emplace_back("bundleIdentifier", *entry.bundleIdentifier);
  return object;
}

std::optional<std::string> text(const Json& object, const char* key) {
  const Json* value = object.member(key);
  if (!value || !value->text()) return std::nullopt;
  return *value->text();
}

std::optional<HealthManifestEntry> decode(const Json& object) {
  const auto sourcePath = text(object, "sourcePath");
  const auto destinationPath = text(object, "destinationPath");
  const auto movedAtText = text(object, "movedAt");
  const auto movedAt = movedAtText ? DateText::parsingISO8601(*movedAtText) : std::nullopt;
  const Json* size = object.member("sizeBytes");
  const auto sizeBytes = size ? size->integer() : std::nullopt;
  const auto bundleIdentifier = text(object, "bundleIdentifier");
  const bool identifierIsWrong = object.member("bundleIdentifier") && !bundleIdentifier;
  if (!sourcePath || !destinationPath || !movedAt || !sizeBytes || identifierIsWrong) return std::nullopt;
  return HealthManifestEntry{*sourcePath, *destinationPath, bundleIdentifier, *sizeBytes, *movedAt};
}

std::optional<Entries> decodeAll(const Json& json) {
  if (!json.array()) return std::nullopt;
  Entries entries;
  for (const Json& object : *json.array()) {
    auto entry = decode(object);
    if (!entry) return std::nullopt;
    entries.push_back(*std::move(entry));
  }
  return entries;
}

void write(Platform& platform, const Entries& entries) {
  Json::Array array;
  for (const HealthManifestEntry& entry : entries) array.push_back(encode(entry));
  const Path file = fileURL(platform.places);
  platform.files.createFolder(file.parent()).orIgnore();
  platform.files.writeAtomically(file, Json(std::move(array)).prettyText()).orIgnore();
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
  const auto bytes = platform.files.read(fileURL(platform.places));
  const auto json = bytes ? Json::parse(*bytes) : std::nullopt;
  return json ? decodeAll(*json).value_or(Entries{}) : Entries{};
}

void record(Platform& platform, const HealthManifestEntry& entry) {
  // A name that is no text has no form in the file, and would make all of it unreadable.
  if (!Text::isUTF8(entry.sourcePath) || !Text::isUTF8(entry.destinationPath)) return;
  Entries entries = without(entry.sourcePath, load(platform));
  entries.push_back(entry);
  write(platform, entries);
}

void forget(Platform& platform, const std::string& sourcePath) {
  const Entries entries = load(platform);
  const Entries kept = without(sourcePath, entries);
  if (kept.size() != entries.size()) write(platform, kept);
}

}  // namespace quarn::HealthManifest
