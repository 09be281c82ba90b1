/// Whatever the bytes are, the readers give a value within their bounds or nothing.
#include <cstdint>
#include <cstdlib>

#include "Platform/PropertyList.h"
#include "Platform/Text.h"

namespace {

using namespace quarn::PropertyList;

void expectText(const std::string& text) {
  if (!quarn::Text::isUTF8(text)) std::abort();
}

void expectWithinBounds(const Value& value, int nesting) {
  const bool isContainer = value.as<Array>() || value.as<Dictionary>();
  if (isContainer && ++nesting > deepestNesting) std::abort();
  if (const auto* text = value.as<std::string>()) expectText(*text);
  if (const auto* items = value.as<Array>()) {
    for (const Value& item : *items) expectWithinBounds(item, nesting);
  }
  if (const auto* members = value.as<Dictionary>()) {
    for (const auto& [key, item] : *members) {
      expectText(key);
      expectWithinBounds(item, nesting);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto root = parse(bytes);
  if (root) expectWithinBounds(*root, 0);
  const bool isDictionary = root && root->as<Dictionary>();
  if (texts(bytes).has_value() != isDictionary) std::abort();
  return 0;
}
