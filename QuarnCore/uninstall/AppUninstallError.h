#pragma once

#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// An uninstall that is refused before anything was touched.
class AppUninstallError : public LocalizedError {
 public:
  static AppUninstallError refused(std::string message) { return AppUninstallError(std::move(message)); }

  const std::string& localizedDescription() const noexcept override { return message_; }

 private:
  explicit AppUninstallError(std::string message) : message_(std::move(message)) {}

  std::string message_;
};

}  // namespace quarn
