#pragma once

#include <string>

namespace bench {

/// A script in the place of a tool while it lives.
class ReplacedTool {
 public:
  ReplacedTool(const std::string& tool, const std::string& script);
  ~ReplacedTool();
  ReplacedTool(const ReplacedTool&) = delete;
  ReplacedTool& operator=(const ReplacedTool&) = delete;

 private:
  const std::string tool_;
  const std::string kept_;
};

}  // namespace bench
