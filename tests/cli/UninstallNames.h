#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// The names that a home for uninstalling is made of.
namespace homes {

using Lines = std::vector<std::string>;

/// Chance that repeats itself from its seed.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : random_(seed) {}
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
  bool isOneIn(std::size_t count) { return below(count) == 0; }
  bool hasPercent(std::size_t percent) { return below(100) < percent; }
  template <class Item>
  const Item& pick(const std::vector<Item>& items) {
    return items[below(items.size())];
  }

 private:
  std::mt19937_64 random_;
};

// Names of an application: usual ones, and those that a stranger would write.

std::string identifier(Dice& dice);
std::string bundleName(Dice& dice);
std::string listedName(Dice& dice);
std::string executable(Dice& dice);

/// Whether a folder may have an entry of this name.
bool isName(const std::string& text);
/// The names under which the data of an application called so is looked for, and more of that kind.
Lines exactNames(const std::string& word);
/// Names of other things that are like a word. Some are no names at all.
Lines lookAlikes(const std::string& word);

}  // namespace homes
