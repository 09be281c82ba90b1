#pragma once

#include <string_view>

namespace quarn::BinaryOutline {

/// Whether a binary property list stays of reasonable size when each value is copied to every place that
/// refers to it: a few hundred bytes can stand for more than any memory holds. Nesting beyond 512,
/// references outside of the list and keys that are no texts or hold a NUL are refused; the other values
/// aren't read.
bool isReasonable(std::string_view bytes);

}  // namespace quarn::BinaryOutline
