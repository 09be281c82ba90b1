#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Property lists for tests, as text and as bytes.
namespace quarn::lists {

inline const std::string head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
inline const std::string tail = "</plist>\n";

inline std::string xml(const std::string& value) {
  return head + value + tail;
}

inline std::string bigEndian(std::uint64_t number, int width) {
  std::string bytes;
  for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
  return bytes;
}

/// A reference to an object of a binary list, as `binary` writes them.
inline std::string reference(std::size_t object) {
  return bigEndian(object, 2);
}

/// The marker of an object and its content.
inline std::string object(int marker, const std::string& content = "") {
  return static_cast<char>(marker) + content;
}

/// A binary list of the objects, the first of which is the root.
inline std::string binary(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const auto& one : objects) {
    table += bigEndian(bytes.size(), 4);
    bytes += one;
  }
  const auto tableStart = bytes.size();
  return bytes + table + std::string(6, '\0') + "\4\2" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
         bigEndian(tableStart, 8);
}

/// A dictionary that holds arrays within each other, each of them referring `fan` times to the next.
inline std::string binaryTower(std::size_t height, std::size_t fan) {
  std::vector<std::string> objects{object(0xD1, reference(1) + reference(2)), object(0x51, "a")};
  for (std::size_t level = 0; level < height; ++level) {
    std::string array = object(static_cast<int>(0xA0 | fan));
    for (std::size_t i = 0; i < fan; ++i) array += reference(objects.size() + 1);
    objects.push_back(array);
  }
  objects.push_back(object(0x51, "x"));
  return binary(objects);
}

/// A dictionary that holds arrays within each other.
inline std::string xmlTower(std::size_t height) {
  std::string value = "<dict><key>a</key>";
  for (std::size_t i = 0; i < height; ++i) value += "<array>";
  for (std::size_t i = 0; i < height; ++i) value += "</array>";
  return xml(value + "</dict>");
}

}  // namespace quarn::lists
