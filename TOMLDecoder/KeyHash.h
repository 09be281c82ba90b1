#pragma once

#include <cstdint>
#include <string_view>

namespace toml {

/// A key of at most 8 bytes is its own hash: the bytes, the first one lowest. A longer one hashes by FNV-1a.
std::uint64_t fastKeyHash(std::string_view key);

/// What an entry keeps of the hash of its key: half the memory, with every bit of the hash in it.
constexpr std::uint32_t keptHash(std::uint64_t hash) {
  return static_cast<std::uint32_t>(((hash ^ (hash >> 32)) * 0x9E3779B97F4A7C15) >> 32);
}

/// The two bits that a key sets in the filter of its table.
constexpr std::uint64_t bloomBits(std::uint64_t hash) {
  return (std::uint64_t{1} << (hash & 63)) | (std::uint64_t{1} << ((hash >> 6) & 63));
}

}  // namespace toml
