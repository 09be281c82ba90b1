#include "tests/support/Patterns.h"

#include <regex>

namespace patterns {

bool match(const std::string& text, const std::string& pattern) {
  return std::regex_match(text, std::regex(pattern));
}

bool search(const std::string& text, const std::string& pattern) {
  return std::regex_search(text, std::regex(pattern));
}

std::string replace(const std::string& text, const std::string& pattern, const std::string& with) {
  return std::regex_replace(text, std::regex(pattern), with);
}

std::vector<std::vector<std::string>> groups(const std::string& text, const std::string& pattern) {
  const std::regex compiled(pattern);
  std::vector<std::vector<std::string>> found;
  for (std::sregex_iterator part(text.begin(), text.end(), compiled), end; part != end; ++part)
    found.emplace_back(part->begin(), part->end());
  return found;
}

}  // namespace patterns
