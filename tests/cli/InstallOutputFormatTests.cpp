#include <gtest/gtest.h>

#include "QuarnCLI/report/InstallOutputFormat.h"

namespace quarn {
namespace {

TEST(InstallOutputFormat, eachWordNamesItsFormat) {
  EXPECT_EQ(fromRawValue<InstallOutputFormat>("human"), InstallOutputFormat::human);
  EXPECT_EQ(fromRawValue<InstallOutputFormat>("tsv"), InstallOutputFormat::tsv);
  EXPECT_EQ(fromRawValue<InstallOutputFormat>("toml"), InstallOutputFormat::toml);
  EXPECT_EQ(rawValue(InstallOutputFormat::human), "human");
  EXPECT_EQ(rawValue(InstallOutputFormat::tsv), "tsv");
  EXPECT_EQ(rawValue(InstallOutputFormat::toml), "toml");
}

TEST(InstallOutputFormat, anUnknownWordNamesNone) {
  for (const char* word : {"", "json", "TSV", "toml ", "Human"}) {
    EXPECT_FALSE(fromRawValue<InstallOutputFormat>(word)) << word;
  }
}

}  // namespace
}  // namespace quarn
