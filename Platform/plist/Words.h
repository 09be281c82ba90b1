#pragma once

#include <string>
#include <string_view>

namespace quarn {

/// Returns a word of an XML file with the letters from A to Z in lower case. No other letter occurs in the
/// words that are looked for.
inline std::string lowercasedWord(std::string_view word) {
  std::string result(word);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

}  // namespace quarn
