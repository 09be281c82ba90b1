#pragma once

#include <cstdint>

#include "TOMLDecoder/Token.h"

namespace toml {

/// What binds a key to its content. The pairs of one table form a ring: `next` is an index into the same
/// list, and the table knows the last one. `keyHash` is the kept half of the hash. A key lies in the source
/// or, where it isn't written there as it reads, behind it in the key texts.
struct KeyValuePair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  TextRange value;
};

struct KeyTablePair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  std::uint32_t table;
};

struct KeyArrayPair {
  TextRange key;
  std::uint32_t keyHash;
  std::uint32_t next;
  std::uint32_t array;
};

}  // namespace toml
