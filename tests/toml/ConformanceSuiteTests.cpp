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

  /// Prints how many were right. A suite without documents proves nothing.
  static void tally(const std::string& kind, std::size_t all) {
    EXPECT_GT(all, 0u);
    std::cout << all << " " << kind << " documents of the conformance suite" << std::endl;
  }

  fs::path suite_;
};

}  // namespace

TEST_F(TOMLConformanceSuite, validDocumentsHaveTheExpectedContent) {
  const auto all = documents("valid");
  for (const fs::path& path : all) {
    SCOPED_TRACE(path.string());
    std::string json;
    EXPECT_EQ(documents::errorOf([&] { json = taggedJson(toml::TOMLTable(contents(path))); }), "no error");
    if (json.empty()) continue;
    const std::string expected = contents(fs::path(path).replace_extension(".json"));
    EXPECT_TRUE(TaggedValue::parse(json) == TaggedValue::parse(expected)) << json;
  }
  tally("valid", all.size());
}

TEST_F(TOMLConformanceSuite, invalidDocumentsAreRefusedWithTheirLine) {
  const auto all = documents("invalid");
  for (const fs::path& path : all) {
    SCOPED_TRACE(path.string());
    const std::string document = contents(path);
    std::size_t line = 0;
    try {
      taggedJson(toml::TOMLTable(document));
      ADD_FAILURE() << "accepted";
    } catch (const toml::TOMLError& error) {
      line = error.reason.lineNumber;
      EXPECT_EQ(error.text().rfind("(Line " + std::to_string(line) + ") ", 0), 0u) << error.text();
    }
    EXPECT_GE(line, 1u);
    EXPECT_LE(line, 1u + static_cast<std::size_t>(std::count(document.begin(), document.end(), '\n')));
  }
  tally("invalid", all.size());
}
