#pragma once

#include <bit>
#include <cstdint>

#include "TOMLDecoder/internal/DocumentEntries.h"
#include "TOMLDecoder/internal/FlatList.h"

namespace toml {

/// Finds the entries of a large table by the `indexHash` of a key: a hash table with open addressing. Each
/// slot has a byte of the hash beside it, so that hardly any other entry is looked at on the way. It doesn't
/// grow; a larger one is made instead.
class KeyIndex {
 public:
  /// `size` is a power of two.
  explicit KeyIndex(std::uint32_t size) : shift_(32 - std::countr_zero(size)) {
    tags_.resize(size, 0);
    entries_.resize(size, {});
  }

  std::uint32_t size() const { return tags_.size(); }
  bool isFull() const { return count_ * std::uint64_t{5} >= tags_.size() * std::uint64_t{4}; }

  /// `isIt` tells whether an entry has the key.
  template <typename IsIt>
  Entry find(std::uint32_t hash, const IsIt& isIt) const {
    for (std::uint32_t slot = home(hash); tags_[slot] != 0; slot = after(slot)) {
      if (tags_[slot] == tagOf(hash) && isIt(entries_[slot])) return entries_[slot];
    }
    return {};
  }

  /// It isn't full, and has no entry of this key.
  void add(std::uint32_t hash, Entry entry) {
    std::uint32_t slot = home(hash);
    while (tags_[slot] != 0) slot = after(slot);
    tags_[slot] = tagOf(hash);
    entries_[slot] = entry;
    ++count_;
  }

 private:
  static std::uint8_t tagOf(std::uint32_t hash) { return static_cast<std::uint8_t>(hash | 1); }

  std::uint32_t home(std::uint32_t hash) const { return hash >> shift_; }
  std::uint32_t after(std::uint32_t slot) const { return (slot + 1) & (tags_.size() - 1); }

  FlatList<std::uint8_t> tags_;  ///< 0 marks a free slot
  FlatList<Entry> entries_;
  std::uint32_t count_ = 0;
  int shift_;
};

}  // namespace toml
