#include <gtest/gtest.h>

#include "QuarnCLI/report/TOMLFormatter.h"

namespace quarn {
namespace {

TEST(TOMLFormatter, aBackslashBeforeAQuoteComesOutAsThreeBackslashesAndAQuote) {
  EXPECT_EQ(TOMLFormatter::q("a\\\"b"), "\"a\\\\\\\"b\"");
}

TEST(TOMLFormatter, onlyBackslashesAndQuotesAreEscaped) {
  const std::pair<std::string, std::string> rows[] = {
      {"", "\"\""},
      {"plain", "\"plain\""},
      {"\"", "\"\\\"\""},
      {"\\", "\"\\\\\""},
      {"\\\\", "\"\\\\\\\\\""},
      {"a\nb\tc\x01", "\"a\nb\tc\x01\""},
      {"é🎛", "\"é🎛\""},
  };
  for (const auto& [text, quoted] : rows) EXPECT_EQ(TOMLFormatter::q(text), quoted);
}

TEST(TOMLFormatter, aPathWithALineFeedBreaksTheLine) {
  EXPECT_EQ(TOMLFormatter::q("/a\nb"), "\"/a\nb\"");
  EXPECT_EQ(TOMLFormatter::array("paths", {"/a\nb"}), "paths = [\"/a\nb\"]");
}

TEST(TOMLFormatter, anArrayIsOneLineOfQuotedValues) {
  EXPECT_EQ(TOMLFormatter::array("key", {}), "key = []");
  EXPECT_EQ(TOMLFormatter::array("key", {"one"}), "key = [\"one\"]");
  EXPECT_EQ(TOMLFormatter::array("key", {"a", "b\"", "c\\"}), "key = [\"a\", \"b\\\"\", \"c\\\\\"]");
}

}  // namespace
}  // namespace quarn
