#pragma once

#include <exception>
#include <string>

namespace quarn {

/// The one base of everything that is thrown: an error that can tell a person what went wrong.
/// It is caught in one place, the entry, which prints `localizedDescription`.
class LocalizedError : public std::exception {
 public:
  /// The sentence shown to a person; never empty, no line feed at the end.
  virtual std::string localizedDescription() const = 0;

  const char* what() const noexcept override { return "quarn::LocalizedError"; }
};

}  // namespace quarn
