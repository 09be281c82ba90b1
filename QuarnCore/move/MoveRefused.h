#pragma once

#include <string>

#include "Platform/LocalizedError.h"

namespace quarn {

/// A move or a way back that isn't begun, or isn't carried on, since it could lose something or tear it
/// apart. The source is whole.
class MoveRefused : public LocalizedError {
 public:
  explicit MoveRefused(std::string sentence) : sentence_(std::move(sentence)) {}
  const std::string& localizedDescription() const noexcept override { return sentence_; }

 private:
  std::string sentence_;
};

}  // namespace quarn
