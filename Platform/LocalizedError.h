#pragma once

#include <exception>
#include <string>

namespace quarn {

/// The one base of what this program throws: an error that can tell a person what went wrong. (The TOML
/// reader, which knows nothing of this program, throws its own.)
class LocalizedError : public std::exception {
 public:
  /// The sentence shown to a person; never empty, no line feed at the end.
  virtual const std::string& localizedDescription() const noexcept = 0;

  /// The same sentence, for whoever catches a `std::exception`.
  const char* what() const noexcept final { return localizedDescription().c_str(); }
};

}  // namespace quarn
