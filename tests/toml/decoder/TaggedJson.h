#pragma once

#include <string>

#include "TOMLDecoder/TOMLTable.h"

/// A document with every value unpacked, as JSON in which a value tells its type:
/// {"port":{"type":"integer","value":"8001"}}. However deep it is nested, it takes no stack.
/// Throws TOMLError for a value that can't be read.
std::string taggedJson(const toml::TOMLTable& root);
