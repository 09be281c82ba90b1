#pragma once

#include <cstdint>

namespace toml {

/// The pairs of one kind that belong to a table: the index of the last one of the ring.
struct PairRing {
  static constexpr std::uint32_t none = 0xFFFFFFFF;

  std::uint32_t last = none;
};

struct InternalTOMLTable {
  /// A table with more keys is looked up in an index of its own. The filter lets nearly every miss through
  /// long before, and keys that begin alike make it do so from the second one on.
  static constexpr std::uint32_t mostUnindexedKeys = 24;

  std::uint64_t keyHashBloom = 0;
  PairRing keyValues{};
  PairRing arrays{};
  PairRing tables{};
  std::uint32_t implicit : 1 = 0;  ///< made on the way to a table that a header names
  std::uint32_t readOnly : 1 = 0;  ///< an inline table that has been closed
  std::uint32_t definedByDottedKey : 1 = 0;
  std::uint32_t indexed : 1 = 0;
  std::uint32_t keyCountOrIndex : 28 = 0;  ///< how many keys; if indexed, which index of the document
};

}  // namespace toml
