#include <gtest/gtest.h>

#include "QuarnCore/installer/InstallerOption.h"
#include "TOMLDecoder/TOMLDecoder.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

const Lines complete = {
    "id = 'one'",
    "label = 'The first'",
    "strategy = 'free text'",
    "sourceKinds = ['dmg', 'app', 'dmg']",
    "allowUntrustedPackages = true",
    "allowUntrustedScripts = true",
    "externalRootName = 'Root'",
    "applicationLinkRoot = '/Links'",
    "track = true",
    "relocateSafeApps = true",
};

std::string text(const Lines& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return joined;
}

InstallerOption decoded(const Lines& lines) {
  return toml::TOMLDecoder().decode<InstallerOption>(text(lines));
}

/// The complete file with the line of one key replaced, or without it.
Lines with(const std::string& key, const std::string& line = "") {
  Lines lines;
  for (const std::string& each : complete) {
    const bool isIt = each.starts_with(key + " ");
    if (!isIt) lines.push_back(each);
    if (isIt && !line.empty()) lines.push_back(line);
  }
  return lines;
}

TEST(InstallerOption, isDecodedFieldByField) {
  const InstallerOption expected{.id = "one",
                                 .label = "The first",
                                 .strategy = "free text",
                                 .sourceKinds = {InstallerKind::dmg, InstallerKind::app, InstallerKind::dmg},
                                 .allowUntrustedPackages = true,
                                 .allowUntrustedScripts = true,
                                 .externalRootName = "Root",
                                 .applicationLinkRoot = "/Links",
                                 .track = true,
                                 .relocateSafeApps = true};
  EXPECT_EQ(decoded(complete), expected);
}

TEST(InstallerOption, keepsEachFlagApart) {
  EXPECT_FALSE(
      decoded(with("allowUntrustedPackages", "allowUntrustedPackages = false")).allowUntrustedPackages);
  EXPECT_FALSE(decoded(with("allowUntrustedScripts", "allowUntrustedScripts = false")).allowUntrustedScripts);
  EXPECT_FALSE(decoded(with("track", "track = false")).track);
  EXPECT_FALSE(decoded(with("relocateSafeApps", "relocateSafeApps = false")).relocateSafeApps);
}

TEST(InstallerOption, withoutAWordOnScriptsForbidsThem) {
  EXPECT_FALSE(decoded(with("allowUntrustedScripts")).allowUntrustedScripts);
}

TEST(InstallerOption, needsEveryOtherKey) {
  for (const char* key : {"id", "label", "strategy", "sourceKinds", "allowUntrustedPackages",
                          "externalRootName", "applicationLinkRoot", "track", "relocateSafeApps"}) {
    EXPECT_THROW(decoded(with(key)), toml::TOMLError) << key;
  }
}

TEST(InstallerOption, takesNoValueOfAnotherType) {
  for (const char* line :
       {"id = 1", "label = true", "strategy = ['a']", "sourceKinds = 'app'", "sourceKinds = [1]",
        "sourceKinds = {}", "allowUntrustedPackages = 'true'", "allowUntrustedScripts = 1",
        "allowUntrustedScripts = 'no'", "externalRootName = 1979-05-27", "applicationLinkRoot = 1.5",
        "track = 'yes'", "relocateSafeApps = 0"}) {
    const std::string key = std::string(line).substr(0, std::string(line).find(' '));
    EXPECT_THROW(decoded(with(key, line)), toml::TOMLError) << line;
  }
}

TEST(InstallerOption, takesEveryKindOfSourceAndNoOtherWord) {
  constexpr auto allKinds = allCases<InstallerKind>();
  const auto all =
      decoded(with("sourceKinds", "sourceKinds = ['app', 'dmg', 'zip', 'pkg', 'mpkg', 'script', 'unknown']"));
  EXPECT_EQ(all.sourceKinds, std::vector<InstallerKind>(allKinds.begin(), allKinds.end()));
  for (const char* kinds : {"['App']", "['app', 'rpm']", "['']", "[' app']"}) {
    EXPECT_THROW(decoded(with("sourceKinds", std::string("sourceKinds = ") + kinds)), toml::TOMLError)
        << kinds;
  }
  EXPECT_TRUE(decoded(with("sourceKinds", "sourceKinds = []")).sourceKinds.empty());
}

TEST(InstallerOption, tellsWhereAnUnknownKindOfSourceStands) {
  try {
    decoded(with("sourceKinds", "sourceKinds = ['app',\n'rpm']"));
    FAIL();
  } catch (const toml::TOMLError& error) {
    EXPECT_STREQ(error.what(), "(Line 5) 'rpm' is not a kind of source (at sourceKinds[1])");
  }
}

TEST(InstallerOption, passesOverKeysOfOtherNames) {
  Lines lines = complete;
  lines.insert(lines.begin(), "colour = 'red'");
  lines.push_back("[more]");
  lines.push_back("id = 5");
  EXPECT_EQ(decoded(lines), decoded(complete));
}

TEST(InstallerOption, keysAreTheFieldsToTheLetter) {
  EXPECT_THROW(decoded(with("track", "Track = true")), toml::TOMLError);
  EXPECT_THROW(decoded(with("sourceKinds", "source_kinds = ['app']")), toml::TOMLError);
}

TEST(InstallerKind, hasAWordEach) {
  const char* words[] = {"app", "dmg", "zip", "pkg", "mpkg", "script", "unknown"};
  constexpr auto kinds = allCases<InstallerKind>();
  ASSERT_EQ(std::size(words), kinds.size());
  for (std::size_t i = 0; i < std::size(words); ++i) {
    EXPECT_EQ(rawValue(kinds[i]), words[i]);
    EXPECT_EQ(fromRawValue<InstallerKind>(words[i]), kinds[i]);
  }
  EXPECT_EQ(fromRawValue<InstallerKind>("exe"), std::nullopt);
}

}  // namespace
}  // namespace quarn
