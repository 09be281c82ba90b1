#pragma once

#include <string>

#include "Platform/PlatformError.h"

/// Why a stored record can't be read or written, with the path of the key.
namespace quarn::StoredJsonError {

inline constexpr const char* domain = "StoredJson";

inline constexpr int notJsonCode = 1;
inline constexpr int missingCode = 2;
inline constexpr int wrongTypeCode = 3;
inline constexpr int notStorableCode = 4;

inline PlatformError notJson() {
  return {domain, notJsonCode, "The text is not JSON"};
}
inline PlatformError missing(const std::string& keyPath) {
  return {domain, missingCode, keyPath + " is missing"};
}
/// `keyPath` is empty if the root value itself has the wrong type.
inline PlatformError wrongType(const std::string& keyPath) {
  return {domain, wrongTypeCode, (keyPath.empty() ? "The record" : keyPath) + " has the wrong type"};
}
inline PlatformError notStorable(const std::string& keyPath) {
  return {domain, notStorableCode, (keyPath.empty() ? "The record" : keyPath) + " has no form in JSON"};
}

}  // namespace quarn::StoredJsonError
