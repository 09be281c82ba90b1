#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/TOMLTable.h"
#include "tests/toml/decoder/TaggedJson.h"

/// What the cases of this folder ask of a document.
namespace documents {

/// What `work` throws as text; "no error" if it throws nothing.
template <typename Work>
std::string errorOf(const Work& work) {
  try {
    work();
  } catch (const toml::TOMLError& error) {
    return error.text();
  }
  return "no error";
}

inline std::string parseErrorOf(const std::string& document) {
  return errorOf([&] { toml::TOMLTable{document}; });
}

/// Parsing and reading everything.
inline std::string readErrorOf(const std::string& document) {
  return errorOf([&] { taggedJson(toml::TOMLTable(document)); });
}

/// A document and what parsing it is to say.
struct Refused {
  std::string document;
  std::string message;
};

/// Every document is refused while it is parsed, with exactly this text.
inline void expectErrors(const std::vector<Refused>& documents) {
  for (const Refused& each : documents) EXPECT_EQ(parseErrorOf(each.document), each.message) << each.document;
}

inline std::string syntax(int line, const std::string& message) {
  return "(Line " + std::to_string(line) + ") Syntax error: " + message;
}

inline std::string tagged(const std::string& type, const std::string& value) {
  return R"({"type":")" + type + R"(","value":")" + value + "\"}";
}

inline std::string integer(int number) {
  return tagged("integer", std::to_string(number));
}

}  // namespace documents
