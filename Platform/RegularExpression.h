#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quarn {

/// A regular expression over UTF-8 text. `$` matches at the end and before one last line end.
class RegularExpression {
 public:
  /// A pattern that doesn't compile matches nothing.
  explicit RegularExpression(std::string_view pattern);
  ~RegularExpression();
  RegularExpression(const RegularExpression&) = delete;
  RegularExpression& operator=(const RegularExpression&) = delete;

  /// What group `number` (1 is the first) captured in each match, in order of appearance.
  std::vector<std::string> captures(std::string_view text, int number) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace quarn
