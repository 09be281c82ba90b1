#pragma once

#include <cstdint>
#include <string_view>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/Values.h"
#include "TOMLDecoder/internal/TOMLDocument.h"

namespace toml {

ValueKind valueKindOf(std::string_view token);
/// What errors call what stands somewhere: "table", "array", or the kind of value, "integer" for example;
/// "value" for one of no kind.
const char* nameOf(const TOMLDocument& document, const Content& content);

/// The reason of an error about another type than the one that was asked for.
TOMLError::Reason mismatchAt(const TOMLKey& key, const char* expected, const char* found);

/// The value of a range of the document. Throws TOMLError with the line of the value and, if it is of another
/// type, what it is instead.
template <ReadableValue T>
T unpackValue(const TOMLDocument& document, TextRange value);

}  // namespace toml
