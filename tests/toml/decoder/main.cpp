/// Reads a TOML document from standard input and prints it as tagged JSON. For a wrong one: the error on
/// standard error, and status 1.
#include <iostream>
#include <iterator>
#include <string>

#include "TOMLDecoder/TOMLError.h"
#include "tests/toml/decoder/TaggedJson.h"

int main() {
  try {
    const std::string text(std::istreambuf_iterator<char>(std::cin), {});
    std::cout << taggedJson(toml::TOMLTable(text)) << std::endl;
    return std::cout ? 0 : 1;
  } catch (const toml::TOMLError& error) {
    std::cerr << error.what() << std::endl;
    return 1;
  }
}
