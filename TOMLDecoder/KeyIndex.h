#pragma once

#include <bit>
#include <cstdint>

#include "TOMLDecoder/Entry.h"
#include "TOMLDecoder/FlatList.h"

namespace toml {

/// Finds the entries of a large table by the `indexHash` of a key, which stands beside each of them, so that
/// nearly no other entry is looked at on the way.
class KeyIndex {
 public:
  /// `size` is a power of two.
  explicit KeyIndex(std::uint32_t size) : shift_(32 - std::countr_zero(size)) { slots_.resize(size, {}); }

  bool isFull() const { return count_ * std::uint64_t{5} >= slots_.size() * std::uint64_t{4}; }

  /// One of twice the size with the same entries.
  KeyIndex grown() const {
    KeyIndex larger(slots_.size() * 2);
    for (const Slot& slot : slots_) {
      if (slot.entry) larger.add(slot.hash, slot.entry);
    }
    return larger;
  }

  /// `isIt` tells whether an entry has the key.
  template <typename IsIt>
  Entry find(std::uint32_t hash, const IsIt& isIt) const {
    for (std::uint32_t at = home(hash); slots_[at].entry; at = after(at)) {
      if (slots_[at].hash == hash && isIt(slots_[at].entry)) return slots_[at].entry;
    }
    return {};
  }

  /// It isn't full, and has no entry of this key.
  void add(std::uint32_t hash, Entry entry) {
    std::uint32_t at = home(hash);
    while (slots_[at].entry) at = after(at);
    slots_[at] = {hash, entry};
    ++count_;
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    Entry entry{};  ///< of no kind in a free slot
  };

  std::uint32_t home(std::uint32_t hash) const { return hash >> shift_; }
  std::uint32_t after(std::uint32_t at) const { return (at + 1) & (slots_.size() - 1); }

  FlatList<Slot> slots_;
  std::uint32_t count_ = 0;
  int shift_;
};

}  // namespace toml
