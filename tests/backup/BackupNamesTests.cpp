#include <gtest/gtest.h>

#include "QuarnCore/backup/BackupNames.h"

namespace quarn {
namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

TEST(BackupNames, takeTheProductsWordOutInItsTwoSpellings) {
  const Rows rows = {
      {"Quarn", "App"},
      {"quarn", "app"},
      {"quarn-notes.txt", "app-notes.txt"},
      {"MyQuarnAndquarn.Quarn", "MyAppAndapp.App"},
      {"QUARN", "QUARN"},
      {"qUarn", "qUarn"},
      {"quar", "quar"},
      {"ququarnarn", "quapparn"},
      {"quarnquarn", "appapp"},
      {".quarnrc", ".apprc"},
      {"qua\nrn", "qua\nrn"},
      {" quarn\t", " app\t"},
      {"\xffquarn",
       "\xff"
       "app"},
      {"", ""},
  };
  for (const auto& [name, expected] : rows) EXPECT_EQ(BackupNames::sanitized(name), expected) << name;
}

TEST(BackupNames, ofASourceSayWhatItIs) {
  const Rows rows = {
      {"Quarn.app", "InstalledApp.app"},
      {"Foo.app", "InstalledApp.app"},
      {"FOO.APP", "InstalledApp.app"},
      {".app", "InstalledApp.app"},
      {"app", "SourceApp"},
      {"APP", "SourceApp"},
      {"quarn", "SourceApp"},
      {"Quarn", "App"},
      {"quarn-src", "app-src"},
      {"src", "src"},
      {"app.d", "app.d"},
      {"Foo.apple", "Foo.apple"},
  };
  for (const auto& [name, expected] : rows) EXPECT_EQ(BackupNames::ofSource(name), expected) << name;
}

}  // namespace
}  // namespace quarn
