#include "tests/cli/UninstallPlists.h"

#include <cstdint>
#include <vector>

namespace plists {
namespace {

using namespace std::string_literals;

std::string escaped(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    if (letter == '&')
      result += "&amp;";
    else if (letter == '<')
      result += "&lt;";
    else
      result += letter;
  }
  return result;
}

std::string document(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + content + "</plist>\n";
}

std::string dictionary(const Texts& texts, const std::string& element) {
  std::string result = "<dict>\n";
  for (const auto& [key, text] : texts) {
    const std::string value = element == "string" ? escaped(text) : "7";
    result += "<key>" + key + "</key><" + element + ">" + value + "</" + element + ">\n";
  }
  return result + "</dict>\n";
}

std::string bytesOf(std::uint64_t number, int count) {
  std::string result;
  for (int shift = (count - 1) * 8; shift >= 0; shift -= 8) result += static_cast<char>(number >> shift);
  return result;
}

/// The mark of a text or a dictionary, with how much it holds.
std::string mark(int kind, std::size_t count) {
  if (count < 15) return bytesOf(static_cast<std::uint64_t>(kind) + count, 1);
  return bytesOf(static_cast<std::uint64_t>(kind) + 15, 1) + "\x12" + bytesOf(count, 4);
}

}  // namespace

std::string xml(const Texts& texts) {
  return document(dictionary(texts, "string"));
}

std::string numbers(const Texts& texts) {
  return document(dictionary(texts, "integer"));
}

std::string array(const Texts& texts) {
  return document("<array>\n" + dictionary(texts, "string") + "</array>\n");
}

std::string binary(const Texts& texts) {
  std::vector<std::string> objects(1);
  std::string keys, values;
  for (const auto& [key, text] : texts) {
    keys += bytesOf(objects.size(), 1);
    objects.push_back(mark(0x50, key.size()) + key);
    values += bytesOf(objects.size(), 1);
    objects.push_back(mark(0x50, text.size()) + text);
  }
  objects[0] = mark(0xD0, texts.size()) + keys + values;
  std::string result = "bplist00", offsets;
  for (const std::string& object : objects) {
    offsets += bytesOf(result.size(), 4);
    result += object;
  }
  const std::string trailer =
      "\0\0\0\0\0\0\4\1"s + bytesOf(objects.size(), 8) + bytesOf(0, 8) + bytesOf(result.size(), 8);
  return result + offsets + trailer;
}

}  // namespace plists
