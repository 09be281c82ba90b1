#include <algorithm>
#include <vector>

#include "Platform/PropertyList.h"

namespace quarn::PropertyList {
namespace {

constexpr std::string_view header =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else {
      result += c;
    }
  }
  return result;
}

/// Returns the rank of a byte of UTF-8 in the order of UTF-16. The two orders differ in one point: the
/// characters from U+E000 to U+FFFF, whose first byte is EE or EF, come after all that need a surrogate pair.
int rankInUTF16(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte == 0xEE || byte == 0xEF ? byte + 0x100 : byte;
}

bool precedesInUTF16(const std::string& a, const std::string& b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return rankInUTF16(x) < rankInUTF16(y); });
}

std::string line(const std::string& element, const std::string& content) {
  return "\t<" + element + ">" + escaped(content) + "</" + element + ">\n";
}

}  // namespace

std::string xml(const std::map<std::string, std::string>& texts) {
  if (texts.empty()) return std::string(header) + "<dict/>\n</plist>\n";
  std::vector<std::string> keys;
  for (const auto& [key, text] : texts) keys.push_back(key);
  std::sort(keys.begin(), keys.end(), precedesInUTF16);
  std::string list = std::string(header) + "<dict>\n";
  for (const std::string& key : keys) list += line("key", key) + line("string", texts.at(key));
  return list + "</dict>\n</plist>\n";
}

}  // namespace quarn::PropertyList
