#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "tests/toml/Documents.h"
#include "tests/toml/TaggedValue.h"

// The public conformance suite isn't part of this repository. Where it lies beside it, or where
// QUARN_TOML_SUITE says, every document of it is read.

namespace fs = std::filesystem;

namespace {

class TOMLConformanceSuite : public testing::Test {
 protected:
  void SetUp() override {
    const char* const given = std::getenv("QUARN_TOML_SUITE");
    suite_ = given ? fs::path(given) : fs::path(QUARN_SOURCE) / "../shared/toml-suite";
    if (!fs::is_directory(suite_)) GTEST_SKIP() << "the conformance suite isn't at " << suite_.string();
  }

  /// Every document of a kind, "valid" or "invalid", sorted.
  std::vector<fs::path> documents(const std::string& kind) const {
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(suite_ / kind)) {
      if (entry.path().extension() == ".toml") found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
  }

  static std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// Asks `faultOf` about every document of a kind; it answers with nothing for a right one. Prints how many
  /// were right; a suite without documents proves nothing.
  template <typename FaultOf>
  void expectRight(const std::string& kind, const FaultOf& faultOf) const {
    const auto all = documents(kind);
    std::size_t right = 0;
    for (const fs::path& path : all) {
      const std::string fault = faultOf(path);
      EXPECT_EQ(fault, "") << path;
      if (fault.empty()) ++right;
    }
    EXPECT_GT(all.size(), 0u);
    std::cout << right << " of " << all.size() << " " << kind << " documents of the conformance suite"
              << std::endl;
  }

  fs::path suite_;
};

std::string faultOfValid(const std::string& document, const std::string& expected) {
  try {
    const std::string json = taggedJson(toml::TOMLTable(document));
    return TaggedValue::parse(json) == TaggedValue::parse(expected) ? "" : "read as " + json;
  } catch (const std::exception& error) {
    return error.what();
  }
}

std::string faultOfInvalid(const std::string& document) {
  try {
    return "accepted: " + taggedJson(toml::TOMLTable(document));
  } catch (const toml::TOMLError& error) {
    const std::size_t line = error.reason.lineNumber;
    const auto lines = static_cast<std::size_t>(std::count(document.begin(), document.end(), '\n')) + 1;
    const bool hasLine = error.text().rfind("(Line " + std::to_string(line) + ") ", 0) == 0;
    return hasLine && line >= 1 && line <= lines ? "" : "without a line of the document: " + error.text();
  }
}

}  // namespace

TEST_F(TOMLConformanceSuite, validDocumentsHaveTheExpectedContent) {
  expectRight("valid", [](const fs::path& path) {
    return faultOfValid(contents(path), contents(fs::path(path).replace_extension(".json")));
  });
}

TEST_F(TOMLConformanceSuite, invalidDocumentsAreRefusedWithTheirLine) {
  expectRight("invalid", [](const fs::path& path) { return faultOfInvalid(contents(path)); });
}
