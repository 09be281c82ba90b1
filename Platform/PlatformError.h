#pragma once

#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// A failure: a domain, a code within the domain and a sentence for people. Failures of the file system carry
/// `cocoaErrorDomain` and the codes that a Mac gives them.
class PlatformError : public LocalizedError {
 public:
  PlatformError(std::string errorDomain, int errorCode, std::string sentence)
      : domain(std::move(errorDomain)), code(errorCode), description(std::move(sentence)) {}

  const std::string& localizedDescription() const noexcept override { return description; }

  std::string domain;
  int code;
  std::string description;
};

inline constexpr const char* cocoaErrorDomain = "NSCocoaErrorDomain";

/// The codes of `cocoaErrorDomain` that this program uses, as numbered in Apple’s FoundationErrors.h.
namespace CocoaErrorCode {
inline constexpr int fileNoSuchFile = 4;  ///< writing, removing or moving: no such item
inline constexpr int fileReadUnknown = 256;
inline constexpr int fileReadNoPermission = 257;
inline constexpr int fileReadInvalidFileName = 258;
inline constexpr int fileReadNoSuchFile = 260;
inline constexpr int fileReadInapplicableStringEncoding = 261;
inline constexpr int fileReadTooLarge = 263;
inline constexpr int fileWriteUnknown = 512;
inline constexpr int fileWriteNoPermission = 513;
inline constexpr int fileWriteInvalidFileName = 514;
inline constexpr int fileWriteFileExists = 516;
inline constexpr int fileWriteOutOfSpace = 640;
inline constexpr int fileWriteVolumeReadOnly = 642;
inline constexpr int featureUnsupported = 3328;  ///< a volume has no Trash
inline constexpr int propertyListReadCorrupt = 3840;
}  // namespace CocoaErrorCode

}  // namespace quarn
