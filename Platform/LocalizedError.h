#pragma once

#include <exception>
#include <string>

namespace quarn {

/// The base class of every error that this program throws: an error with a sentence for people. (The TOML
/// reader, which doesn't depend on this program, throws its own.)
class LocalizedError : public std::exception {
 public:
  /// Returns the sentence to show. It is never empty. It has no line feed at the end, unless it is what a
  /// tool wrote to standard error.
  virtual const std::string& localizedDescription() const noexcept = 0;

  /// Returns the same sentence, for code that catches `std::exception`.
  const char* what() const noexcept final { return localizedDescription().c_str(); }
};

}  // namespace quarn
