#include "TOMLDecoder/internal/KeyHash.h"

#include <random>

namespace toml {

namespace {

struct Secret {
  std::uint64_t start;
  std::uint64_t factor;
};

Secret drawn() {
  std::random_device device;
  const auto word = [&device] { return (std::uint64_t{device()} << 32) | device(); };
  return {word(), word() | 1};
}

}  // namespace

std::uint32_t indexHash(std::string_view key) {
  static const Secret secret = drawn();
  std::uint64_t hash = secret.start ^ key.size();
  // The last word may have bytes in common with the one before it, which does no harm.
  const std::uint64_t last = key.size() > 8 ? Words::load(key.data() + key.size() - 8) : packedBytes(key);
  for (; key.size() > 8; key.remove_prefix(8)) {
    hash = (hash ^ Words::load(key.data())) * secret.factor;
    hash ^= hash >> 32;
  }
  hash = (hash ^ last) * secret.factor;
  return static_cast<std::uint32_t>(((hash ^ (hash >> 32)) * secret.factor) >> 32);
}

}  // namespace toml
