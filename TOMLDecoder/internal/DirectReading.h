#pragma once

#include "TOMLDecoder/internal/ValueUnpacking.h"

namespace toml {

/// What TOMLTable, TOMLArray and TOMLItem have in common. `container` is the table or the array that is read,
/// `key` the key or the place in it.
namespace DirectReading {

/// The error with its path, and with the line of the container if it has none. Nothing keeps the path: it is
/// found by going through the whole document.
TOMLError located(const TOMLDocument& document, Entry container, const TOMLKey& key, const TOMLError& error);

[[noreturn]] void failAsMissing(const TOMLDocument& document, Entry table, std::string_view key,
                                const char* expected);
[[noreturn]] void failBeyondEnd(const TOMLDocument& document, Entry array, std::size_t place);
[[noreturn]] void failAsType(const TOMLDocument& document, Entry container, const TOMLKey& key,
                             const Content& content, const char* expected);
/// For a value that is written as none of the kinds.
[[noreturn]] void failAsInvalid(const TOMLDocument& document, Entry container, const TOMLKey& key,
                                TextRange token);

}  // namespace DirectReading

}  // namespace toml
