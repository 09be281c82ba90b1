#pragma once

#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// The front end's error: wrong usage, or a refusal of its own.
struct CLIError : LocalizedError {
  explicit CLIError(std::string text) : message(std::move(text)) {}
  std::string localizedDescription() const override { return message; }

  std::string message;
};

}  // namespace quarn
