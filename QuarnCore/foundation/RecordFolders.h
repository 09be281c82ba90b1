#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "Platform/Text.h"
#include "QuarnCore/foundation/EntryName.h"
#include "QuarnCore/foundation/StoredJson.h"

namespace quarn {

/// Records of which each is a file in a folder of its own, named by the record's identifier. Dates are stored
/// as seconds since 2001. Like `StoredJson.h`, only sources include this.
template <class Record>
struct RecordFolders {
  const char* fileName;
  StoredJson::Layout layout;

  /// Writes a record into a folder that is there, in place of a former one. The file appears whole or not at
  /// all. Throws.
  void save(Platform& platform, const Record& record, const Path& folder) const {
    const std::string text = StoredJson::write(record, layout, DateForm::secondsSince2001).orThrow();
    platform.files.writeAtomically(folder.appending(fileName), text).orThrow();
  }

  /// Returns the record in a folder; nothing if what is there can't be read as one.
  std::optional<Record> load(const ReadOnlyPlatform& platform, const Path& folder) const {
    const auto text = platform.files.read(folder.appending(fileName));
    if (!text) return std::nullopt;
    return StoredJson::read<Record>(*text, DateForm::secondsSince2001).asOptional();
  }

  /// Returns the records below a folder, by the names of their own folders.
  std::vector<Record> list(const ReadOnlyPlatform& platform, const Path& root, Hidden hidden) const {
    auto names = platform.files.list(root, hidden).valueOr({});
    std::sort(names.begin(), names.end());
    std::vector<Record> records;
    for (const std::string& name : names) {
      if (auto record = load(platform, root.appending(name))) records.push_back(*std::move(record));
    }
    return records;
  }

  /// Does the same with those that aren't hidden, newest first.
  std::vector<Record> newestFirst(const ReadOnlyPlatform& platform, const Path& root) const {
    auto records = list(platform, root, Hidden::skipped);
    std::stable_sort(records.begin(), records.end(),
                     [](const Record& a, const Record& b) { return a.createdAt > b.createdAt; });
    return records;
  }

  /// Returns the record with an identifier. A folder whose record has another one was put there by somebody
  /// else, and isn't that record.
  std::optional<Record> find(const ReadOnlyPlatform& platform, const std::string& id,
                             const Path& root) const {
    if (!EntryName::isOne(id)) return std::nullopt;
    auto record = load(platform, root.appending(id));
    return record && Text::equal(record->id, id) ? std::move(record) : std::nullopt;
  }
};

}  // namespace quarn
