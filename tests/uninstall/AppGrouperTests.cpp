#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "Platform/Path.h"
#include "QuarnCore/uninstall/AppGrouper.h"

namespace quarn {
namespace {

using Names = std::vector<std::string>;

AppRecord record(const std::string& path, const std::optional<std::string>& identifier,
                 const std::optional<std::string>& developer = {},
                 AppRecordKind kind = AppRecordKind::normal) {
  AppRecord made;
  made.id = made.bundlePath = path;
  made.bundleIdentifier = identifier;
  made.developer = developer;
  made.kind = kind;
  return made;
}

/// A record for each identifier, with its place in the list as its path.
std::vector<AppRecord> records(const std::vector<std::optional<std::string>>& identifiers) {
  std::vector<AppRecord> made;
  for (const auto& identifier : identifiers)
    made.push_back(record("/Applications/" + std::to_string(made.size()) + ".app", identifier));
  return made;
}

/// Each group as "key = label: the numbers of its applications".
Names told(const std::vector<AppRecord>& of) {
  Names lines;
  for (const UninstallGroup& each : AppGrouper::group(of)) {
    EXPECT_EQ(each.id(), each.key);
    EXPECT_EQ(each.totalApps(), each.apps.size());
    std::string line = each.key + " = " + each.label + ":";
    for (const AppRecord& app : each.apps) line += " " + Path(app.id).nameWithoutExtension();
    lines.push_back(line);
  }
  return lines;
}

Names groups(const std::vector<std::optional<std::string>>& identifiers) {
  return told(records(identifiers));
}

Names pathsOf(const std::vector<AppRecord>& of) {
  Names paths;
  for (const AppRecord& each : of) paths.push_back(each.bundlePath);
  return paths;
}

TEST(AppGrouper, twoApplicationsOfAMakerAreAGroup) {
  EXPECT_EQ(groups({"com.microsoft.VSCode", "com.microsoft.Word"}),
            Names{"com.microsoft = Microsoft Group: 0 1"});
  EXPECT_EQ(groups({"com.acme.One", "com.acme.Two", "com.acme.Two"}), Names{"com.acme = Acme Group: 0 1 2"});
  EXPECT_EQ(groups({"com.acme", "com.acme.One.Helper"}), Names{"com.acme = Acme Group: 0 1"});
}

TEST(AppGrouper, oneApplicationIsNoGroup) {
  EXPECT_EQ(groups({"com.acme.One"}), Names());
  EXPECT_EQ(groups({"com.acme.One", "org.acme.Two", "com.acmeX.Three"}), Names());
  EXPECT_EQ(groups({}), Names());
}

TEST(AppGrouper, keysAreComparedExactly) {
  EXPECT_EQ(groups({"com.acme.One", "com.ACME.x", "com.acme.Two"}), Names{"com.acme = Acme Group: 0 2"});
  EXPECT_EQ(groups({"com.ACME.x", "com.acme.One", "com.ACME.y", "com.acme.Two"}),
            (Names{"com.ACME = ACME Group: 0 2", "com.acme = Acme Group: 1 3"}));
  EXPECT_EQ(groups({"com.caf\u00E9.x", "com.cafe\u0301.y", "com.cafe.z"}),
            Names{"com.caf\u00E9 = Caf\u00E9 Group: 0 1"})
      << "both forms of a character are one";
}

TEST(AppGrouper, suppressedSecondWordsMakeNoGroup) {
  for (const std::string word : {"apple", "com", "org", "io", "net", "Apple", "APPLE", "Net"}) {
    SCOPED_TRACE(word);
    EXPECT_EQ(groups({"org." + word + ".x", "org." + word + ".y"}), Names());
    EXPECT_EQ(groups({word + ".acme.x", word + ".acme.y"}), Names{word + ".acme = Acme Group: 0 1"});
  }
  EXPECT_EQ(groups({"com.apple.Safari", "com.apple.Mail"}), Names());
  EXPECT_EQ(groups({"com.apples.x", "com.apples.y"}), Names{"com.apples = Apples Group: 0 1"});
}

TEST(AppGrouper, identifiersOfOneWordMakeNoGroup) {
  for (const std::string identifier : {"", "word", ".", "...", "word.", ".word", "..word.."}) {
    SCOPED_TRACE(identifier);
    EXPECT_EQ(groups({identifier, identifier}), Names());
  }
}

TEST(AppGrouper, emptyPiecesAreDropped) {
  EXPECT_EQ(groups({"com..acme.One", ".com.acme...Two.", "com.acme"}), Names{"com.acme = Acme Group: 0 1 2"});
}

TEST(AppGrouper, withoutAnIdentifierTheKeyIsThePath) {
  EXPECT_EQ(groups({std::nullopt, std::nullopt}), Names());
  EXPECT_EQ(told({record("/Applications/One", {}), record("/Applications/One", {})}), Names());
  const auto twice = record("/Applications/Foo.bar/One.app", {});
  EXPECT_EQ(told({twice, twice}), Names{"path:/Applications/Foo.bar/One.app = Bar/One Group: One One"})
      << "the same record twice";
  EXPECT_EQ(told({record("/a.app", "path:/a.app"), record("/a.app", {})}),
            Names{"path:/a.app = App Group: a a"});
}

TEST(AppGrouper, whatBelongsToTheSystemIsInNoGroup) {
  auto risky = record("/System/Applications/A.app", "com.acme.A", "Acme", AppRecordKind::systemRisky);
  const auto one = record("/Applications/B.app", "com.acme.B");
  EXPECT_EQ(told({risky, one}), Names());
  for (const AppRecordKind kind : allCases<AppRecordKind>()) {
    risky.kind = kind;
    EXPECT_EQ(told({risky, one}).size(), kind == AppRecordKind::systemRisky ? 0u : 1u) << rawValue(kind);
  }
}

TEST(AppGrouper, theDeveloperIsTheFirstThatIsKnown) {
  const auto developer = [](const std::vector<std::optional<std::string>>& of) {
    std::vector<AppRecord> made;
    for (const auto& each : of)
      made.push_back(record("/" + std::to_string(made.size()) + ".app", "com.acme.x", each));
    return AppGrouper::group(made).at(0).developer;
  };
  EXPECT_EQ(developer({std::nullopt, "Acme Inc", "Other"}), "Acme Inc");
  EXPECT_EQ(developer({"", "Acme Inc"}), "");
  EXPECT_EQ(developer({std::nullopt, std::nullopt}), std::nullopt);
}

TEST(AppGrouper, aGroupHoldsTheRecordsAsTheyAre) {
  auto one = record("/Applications/One.app", "com.acme.One", "Acme Inc");
  one.footprintBytes = 7;
  const auto two = record("/Applications/Two.app", "com.acme.Two");
  EXPECT_EQ(AppGrouper::group({one, two}),
            (std::vector<UninstallGroup>{{"com.acme", "Acme Group", "Acme Inc", {one, two}}}));
}

TEST(AppGrouper, groupsAreSortedByLabelAsPeopleSortAndOtherwiseAsTheyCome) {
  EXPECT_EQ(groups({"com.zebra.1", "com.\u00E9tude.1", "org.apex.1", "com.Bee.1", "com.apex.1", "com.apex.2",
                    "com.Bee.2", "com.zebra.2", "com.\u00E9tude.2", "org.apex.2", "com.fox.1", "com.fox.2"}),
            (Names{"org.apex = Apex Group: 2 9", "com.apex = Apex Group: 4 5", "com.Bee = Bee Group: 3 6",
                   "com.\u00E9tude = \u00C9tude Group: 1 8", "com.fox = Fox Group: 10 11",
                   "com.zebra = Zebra Group: 0 7"}));
}

TEST(AppGrouper, theLabelIsTheNameOfTheMaker) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"com.openai", "OpenAI"},
      {"com.github", "GitHub"},
      {"com.googlecode", "Google"},
      {"com.google", "Google"},
      {"com.GOOGLE", "Google"},
      {"com.microsoft", "Microsoft"},
      {"com.apple", "Apple"},
      {"com.ai", "AI"},
      {"com.todesktop", "ToDesktop"},
      {"com.acme", "Acme"},
      {"com.aCME", "ACME"},
      {"com.acme-corp two", "Acme-corp two"},
      {"com.1password", "1password"},
      {"com.\u00E9clair", "\u00C9clair"},
      {"com.e\u0301clair", "E\u0301clair"},
      {"com.\u00DFx", "SSx"},
      {"com.istanbul", "Istanbul"},
      {"com.\u65E5\u672C", "\u65E5\u672C"},
      {"..com..acme..", "Acme"},
  };
  for (const auto& [key, name] : rows) {
    EXPECT_EQ(AppGrouper::label(key, "Somebody Else"), name + " Group") << key;
    EXPECT_EQ(AppGrouper::label(key, std::nullopt), name + " Group") << key;
  }
}

TEST(AppGrouper, aKeyOfOneWordIsLabelledByItsDeveloperOrItself) {
  EXPECT_EQ(AppGrouper::label("acme", "Acme Inc"), "Acme Inc Group");
  EXPECT_EQ(AppGrouper::label("acme", ""), "acme Group");
  EXPECT_EQ(AppGrouper::label("acme.", std::nullopt), "acme. Group");
  EXPECT_EQ(AppGrouper::label("", std::nullopt), " Group");
}

TEST(AppGrouper, whatIsInNoGroupKeepsItsOrder) {
  const std::vector<AppRecord> of = {
      record("/Applications/Word.app", "word"),
      record("/Applications/One.app", "com.acme.One"),
      record("/System/Applications/Three.app", "com.acme.Three", {}, AppRecordKind::systemRisky),
      record("/Applications/None.app", {}),
      record("/Applications/Two.app", "com.acme.Two"),
      record("/Applications/Mail.app", "com.apple.Mail"),
      record("/Applications/Safari.app", "com.apple.Safari"),
      record("/Applications/Lone.app", "com.lone.Lone"),
      record("/Applications/Empty.app", ""),
  };
  EXPECT_EQ(pathsOf(AppGrouper::ungrouped(of)),
            (Names{"/Applications/Word.app", "/System/Applications/Three.app", "/Applications/None.app",
                   "/Applications/Mail.app", "/Applications/Safari.app", "/Applications/Lone.app",
                   "/Applications/Empty.app"}));
  EXPECT_EQ(AppGrouper::ungrouped({}), std::vector<AppRecord>());
}

TEST(AppGrouper, whatIsLeftGoesByTheIdOfARecord) {
  const auto one = record("/Applications/One.app", "com.acme.One");
  const auto two = record("/Applications/Two.app", "com.acme.Two");
  const auto sameId = record("/Applications/One.app", "word");
  EXPECT_EQ(pathsOf(AppGrouper::ungrouped({one, sameId, two})), Names());
}

}  // namespace
}  // namespace quarn
