#include "Platform/posix/LinkText.h"

#include <unistd.h>

namespace quarn {

std::optional<std::string> linkText(int folder, const char* name) {
  for (std::string text(256, '\0');; text.resize(text.size() * 2)) {
    const ssize_t count = ::readlinkat(folder, name, text.data(), text.size());
    if (count < 0) return std::nullopt;
    if (static_cast<std::size_t>(count) == text.size()) continue;  // perhaps cut
    text.resize(static_cast<std::size_t>(count));
    return text;
  }
}

}  // namespace quarn
