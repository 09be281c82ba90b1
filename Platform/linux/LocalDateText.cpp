#include <array>
#include <cstdio>
#include <ctime>

#include "Platform/DateText.h"

namespace quarn::DateText {

std::string compactLocal(Moment moment) {
  const std::time_t seconds =
      std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(moment));
  std::tm local{};
  ::localtime_r(&seconds, &local);
  std::array<char, 64> text;
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y%m%d_%H%M%S", &local);
  return {text.data(), length};
}

}  // namespace quarn::DateText
