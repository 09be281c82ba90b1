#include "TOMLDecoder/KeyHash.h"

#include <cstring>

#include "TOMLDecoder/Words.h"

namespace toml {

namespace {

std::uint64_t packed(const char* key, std::size_t length) {
  if (length == 8) return Words::load(key);
  if (length >= 4) {
    std::uint32_t head;
    std::uint32_t tail;
    std::memcpy(&head, key, 4);
    std::memcpy(&tail, key + length - 4, 4);
    return head | (std::uint64_t{tail} << (8 * (length - 4)));
  }
  std::uint64_t word = 0;
  while (length > 0) word = (word << 8) | static_cast<unsigned char>(key[--length]);
  return word;
}

std::uint64_t fnv1a(std::string_view key) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : key) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return hash;
}

}  // namespace

std::uint64_t fastKeyHash(std::string_view key) {
  return key.size() <= 8 ? packed(key.data(), key.size()) : fnv1a(key);
}

}  // namespace toml
