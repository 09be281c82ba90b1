#pragma once

#include <cstdint>
#include <string_view>

namespace toml {

/// Where an index has a key. It depends on numbers drawn once a process, so that nobody can write a document
/// whose keys all meet in one place: the hash that a filter takes is known to everybody.
std::uint32_t indexHash(std::string_view key);

}  // namespace toml
