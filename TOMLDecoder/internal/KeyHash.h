#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "TOMLDecoder/internal/Words.h"

namespace toml {

/// At most 8 bytes, the first one lowest.
inline std::uint64_t packedBytes(std::string_view bytes) {
  if (bytes.size() == 8) return Words::load(bytes.data());
  if (bytes.size() >= 4) {
    std::uint32_t head;
    std::uint32_t tail;
    std::memcpy(&head, bytes.data(), 4);
    std::memcpy(&tail, bytes.data() + bytes.size() - 4, 4);
    return head | (std::uint64_t{tail} << (8 * (bytes.size() - 4)));
  }
  std::uint64_t word = 0;
  for (std::size_t index = bytes.size(); index > 0; --index) {
    word = (word << 8) | static_cast<unsigned char>(bytes[index - 1]);
  }
  return word;
}

/// http://www.isthe.com/chongo/tech/comp/fnv/, with 64 bits.
inline std::uint64_t fnv1a(std::string_view bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return hash;
}

/// A key of at most 8 bytes is its own hash.
inline std::uint64_t fastKeyHash(std::string_view key) {
  return key.size() <= 8 ? packedBytes(key) : fnv1a(key);
}

/// What an entry keeps of the hash of its key: half the memory, and every bit of the hash has a part in it.
/// The factor is 2^64 over the golden ratio (Knuth, The Art of Computer Programming, 6.4).
constexpr std::uint32_t keptHash(std::uint64_t hash) {
  return static_cast<std::uint32_t>(((hash ^ (hash >> 32)) * 0x9E3779B97F4A7C15) >> 32);
}

/// The two bits that a key sets in the filter of its table (Bloom, "Space/Time Trade-offs in Hash Coding with
/// Allowable Errors", 1970). Where one of them is clear, the table doesn't have the key.
constexpr std::uint64_t bloomBits(std::uint64_t hash) {
  return (std::uint64_t{1} << (hash & 63)) | (std::uint64_t{1} << ((hash >> 6) & 63));
}

/// Where an index has a key. It depends on random numbers drawn once a process, because everybody can compute
/// `fastKeyHash` and write a document whose keys all meet in one place (Crosby and Wallach, "Denial of
/// Service via Algorithmic Complexity Attacks", 2003).
std::uint32_t indexHash(std::string_view key);

}  // namespace toml
