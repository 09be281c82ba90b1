/// Whatever the bytes are, the reader gives a content or a TOMLError that names a line of theirs.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/decoder/TaggedJson.h"

namespace {

/// A record as deep as the document, of every shape that a record may have.
struct Tree {
  std::map<std::string, Tree> tables;
  std::vector<Tree> list;

  static Tree decode(const toml::Decoding& from) {
    try {
      return {from.decode<std::map<std::string, Tree>>(), {}};
    } catch (const toml::TOMLError&) {
    }
    try {
      return {{}, from.decode<std::vector<Tree>>()};
    } catch (const toml::TOMLError&) {
    }
    try {
      from.decode<toml::Date>();
      from.decode<std::int8_t>();
      from.decode<float>();
    } catch (const toml::TOMLError&) {
    }
    return {};
  }
};

template <typename Work>
void expectLine(const std::string& document, const Work& work) {
  try {
    work();
  } catch (const toml::TOMLError& error) {
    const auto lines = std::count(document.begin(), document.end(), '\n') + 1;
    if (error.reason.lineNumber < 1 || error.reason.lineNumber > lines) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(reinterpret_cast<const char*>(data), size);
  expectLine(document, [&] { taggedJson(toml::TOMLTable(document)); });
  expectLine(document, [&] {
    toml::TOMLDecoder decoder;
    decoder.isLenient = true;
    decoder.strategy.key = toml::KeyStrategy::convertFromSnakeCase();
    decoder.decode<Tree>(document);
  });
  return 0;
}
