#pragma once

#include <bit>
#include <cstdint>

#include "TOMLDecoder/Entry.h"
#include "TOMLDecoder/FlatList.h"

namespace toml {

/// Finds the entries of a large table by the kept hash of a key. Every slot has a byte of the hash beside
/// it, so that nearly no other entry is looked at on the way.
class KeyIndex {
 public:
  /// `isIt` tells whether an entry has the key.
  template <typename IsIt>
  Entry find(std::uint32_t hash, const IsIt& isIt) const {
    for (std::uint32_t slot = home(hash); tags_[slot] != 0; slot = after(slot)) {
      if (tags_[slot] == tagOf(hash) && isIt(entries_[slot])) return entries_[slot];
    }
    return {};
  }

  /// `hashOf` gives the kept hash of an entry that was added before.
  template <typename HashOf>
  void add(std::uint32_t hash, Entry entry, const HashOf& hashOf) {
    if ((count_ + 1) * std::uint64_t{5} > tags_.size() * std::uint64_t{4}) grow(hashOf);
    place(hash, entry);
    ++count_;
  }

 private:
  static std::uint8_t tagOf(std::uint32_t hash) { return static_cast<std::uint8_t>(hash | 1); }

  std::uint32_t home(std::uint32_t hash) const { return hash >> shift_; }
  std::uint32_t after(std::uint32_t slot) const { return (slot + 1) & (tags_.size() - 1); }

  void place(std::uint32_t hash, Entry entry) {
    std::uint32_t slot = home(hash);
    while (tags_[slot] != 0) slot = after(slot);
    tags_[slot] = tagOf(hash);
    entries_[slot] = entry;
  }

  template <typename HashOf>
  void grow(const HashOf& hashOf) {
    const std::uint32_t size = tags_.empty() ? 64 : tags_.size() * 2;
    FlatList<std::uint8_t> tags;
    FlatList<Entry> entries;
    tags.resize(size, 0);
    entries.resize(size, {});
    std::swap(tags_, tags);
    std::swap(entries_, entries);
    shift_ = 32 - std::countr_zero(size);
    for (const Entry entry : entries) {
      if (entry) place(hashOf(entry), entry);
    }
  }

  FlatList<std::uint8_t> tags_;  ///< 0 marks a free slot
  FlatList<Entry> entries_;
  std::uint32_t count_ = 0;
  int shift_ = 32;
};

}  // namespace toml
