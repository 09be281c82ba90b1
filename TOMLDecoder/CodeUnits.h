#pragma once

#include <array>
#include <string_view>

namespace toml {

/// Which bytes may stand in an unquoted key and in an unquoted value; the tables are indexed by the byte.
namespace CodeUnits {

using Table = std::array<bool, 256>;

constexpr Table tableOf(std::string_view others) {
  Table table{};
  for (std::size_t byte = '0'; byte <= '9'; ++byte) table[byte] = true;
  for (std::size_t byte = 'A'; byte <= 'Z'; ++byte) table[byte] = true;
  for (std::size_t byte = 'a'; byte <= 'z'; ++byte) table[byte] = true;
  for (const char byte : others) table[static_cast<unsigned char>(byte)] = true;
  return table;
}

inline constexpr Table isBareKeyChar = tableOf("-_");
inline constexpr Table isValueChar = tableOf("-_+.:");

}  // namespace CodeUnits

}  // namespace toml
