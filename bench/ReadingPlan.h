#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace bench {

enum class Holds : std::uint8_t {
  table,
  array,
  text,
  integer,
  number,
  boolean,
  offsetDateTime,
  localDateTime,
  date,
  time,
};

/// The key of a table, or the place in an array.
using Where = std::variant<std::string_view, std::size_t>;

/// What stands where in a document: the values in the order of the text, each behind the tables and arrays
/// that it is in. It comes from whoever wrote the text, so that no reader reads by its own findings.
class ReadingPlan {
 public:
  struct Step {
    Holds holds;
    bool isKeyed;
    std::uint32_t key;  ///< where it begins among the keys; if not keyed, the place in the array
    std::uint32_t keyLength;
    std::uint32_t end;  ///< the first step that isn't in this one
  };

  void add(Holds holds, Where where);
  /// All that is added until the closing lies within.
  void open(Holds holds, Where where);
  void close();

  const std::vector<Step>& steps() const { return steps_; }
  std::string_view keyOf(const Step& step) const {
    return std::string_view(keys_).substr(step.key, step.keyLength);
  }

  /// One value out of `each`, and the tables and arrays that it is in. `counted` goes on from document to
  /// document.
  ReadingPlan thinned(std::size_t each, std::size_t& counted) const;

 private:
  void thinInto(ReadingPlan& thin, std::uint32_t first, std::uint32_t end, std::size_t each,
                std::size_t& counted) const;
  Where whereOf(const Step& step) const;

  std::vector<Step> steps_;
  std::vector<std::uint32_t> open_;
  std::string keys_;
};

}  // namespace bench
