#include <gtest/gtest.h>

#include "QuarnCLI/report/InstallOutputFormat.h"

namespace quarn {
namespace {

TEST(InstallOutputFormat, eachWordNamesItsFormat) {
  using namespace InstallOutputFormats;
  EXPECT_EQ(fromRawValue("human"), InstallOutputFormat::human);
  EXPECT_EQ(fromRawValue("tsv"), InstallOutputFormat::tsv);
  EXPECT_EQ(fromRawValue("toml"), InstallOutputFormat::toml);
  EXPECT_EQ(rawValue(InstallOutputFormat::human), "human");
  EXPECT_EQ(rawValue(InstallOutputFormat::tsv), "tsv");
  EXPECT_EQ(rawValue(InstallOutputFormat::toml), "toml");
}

TEST(InstallOutputFormat, anUnknownWordNamesNone) {
  for (const char* word : {"", "json", "TSV", "toml ", "Human"}) {
    EXPECT_FALSE(InstallOutputFormats::fromRawValue(word)) << word;
  }
}

}  // namespace
}  // namespace quarn
