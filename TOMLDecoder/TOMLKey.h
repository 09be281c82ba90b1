#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace toml {

/// One step on the way from the root of a document to a value: a key of a table, a place in an array, or the
/// part that a record's parent type has in its table.
class TOMLKey {
 public:
  struct Super {
    bool operator==(const Super&) const = default;
  };

  TOMLKey(std::string key) : step_(std::move(key)) {}
  TOMLKey(std::size_t index) : step_(index) {}
  TOMLKey(Super share) : step_(share) {}

  const std::string* string() const { return std::get_if<std::string>(&step_); }
  const std::size_t* integer() const { return std::get_if<std::size_t>(&step_); }
  bool isSuper() const { return std::holds_alternative<Super>(step_); }
  /// The key itself, the index in decimal digits, or "super".
  std::string text() const;

  bool operator==(const TOMLKey&) const = default;

 private:
  std::variant<std::string, std::size_t, Super> step_;
};

/// `tools[2].id`
std::string pathText(const std::vector<TOMLKey>& path);

}  // namespace toml
