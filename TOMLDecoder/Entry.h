#pragma once

#include <cstdint>

namespace toml {

/// Names what a key or a place in an array holds, by its index in one of the lists of a document.
struct Entry {
  enum class Kind : std::uint32_t { none, value, array, table };

  Entry() : kind(Kind::none), index(0) {}
  Entry(Kind which, std::uint32_t where) : kind(which), index(where & 0x3FFFFFFF) {}

  explicit operator bool() const { return kind != Kind::none; }

  Kind kind : 2;
  std::uint32_t index : 30;
};

}  // namespace toml
