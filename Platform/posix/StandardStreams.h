#pragma once

namespace quarn {

/// Opens what is closed of the three standard streams onto nothing. Otherwise the next file to be opened
/// would take its number, and what is printed would be written into that file.
void ensureStandardStreams();

}  // namespace quarn
