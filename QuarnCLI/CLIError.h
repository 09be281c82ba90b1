#pragma once

#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// The front end's error: wrong usage, or a refusal of its own.
struct CLIError : LocalizedError {
  explicit CLIError(std::string text) : message(std::move(text)) {}
  const std::string& localizedDescription() const noexcept override { return message; }

  std::string message;
};

}  // namespace quarn
