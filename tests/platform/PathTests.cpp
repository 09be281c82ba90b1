#include <gtest/gtest.h>

#include "Platform/Path.h"

namespace quarn {

TEST(Path, aTrailingSlashIsDropped) {
  EXPECT_EQ(Path("/a/"), Path("/a"));
  EXPECT_EQ(Path("/a///").text(), "/a");
  EXPECT_EQ(Path("/").text(), "/");
  EXPECT_EQ(Path("//").text(), "/");
  EXPECT_EQ(Path("").text(), "");
}

TEST(Path, onlyALeadingSlashMakesItAbsolute) {
  EXPECT_TRUE(Path("/").isAbsolute());
  EXPECT_TRUE(Path("/a").isAbsolute());
  EXPECT_FALSE(Path("a/b").isAbsolute());
  EXPECT_FALSE(Path("").isAbsolute());
}

TEST(Path, theLastComponentIsTheNameOfTheItem) {
  const std::pair<const char*, const char*> rows[] = {
      {"/", "/"}, {"/a/b/", "b"}, {"/a///b", "b"}, {"/a", "a"}, {"a", "a"}, {"a/b", "b"}, {"", ""},
  };
  for (const auto& [path, name] : rows) EXPECT_EQ(Path(path).lastComponent(), name) << path;
}

TEST(Path, theParentLosesTheLastComponentAndTheRootIsItsOwn) {
  const std::pair<const char*, const char*> rows[] = {
      {"/Applications", "/"}, {"/", "/"}, {"/a/b/", "/a"}, {"/a///b", "/a"},
      {"a/b", "a"},           {"a", ""},  {"", ""},
  };
  for (const auto& [path, parent] : rows) EXPECT_EQ(Path(path).parent().text(), parent) << path;
}

TEST(Path, appendingAddsComponentsAsTheyAre) {
  struct Row {
    const char *path, *components, *result;
  };
  const Row rows[] = {
      {"/a", "b/", "/a/b"},    {"/a", "../x", "/a/../x"},
      {"/a", "", "/a"},        {"/", "b", "/b"},
      {"/a", "b/c", "/a/b/c"}, {"/a", "/b", "/a/b"},
      {"/", "/b", "/b"},       {"", "b", "b"},
      {"a", "b", "a/b"},       {"/", "", "/"},
      {"", "/", "/"},          {"", "//", "/"},
      {"/a", "/", "/a"},       {"/a", "//b//", "/a//b"},
      {"/", "/", "/"},         {"", "/b/", "/b"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Path(row.path).appending(row.components).text(), row.result)
        << row.path << " + " << row.components;
  }
}

TEST(Path, theExtensionIsWhatFollowsTheLastDot) {
  struct Row {
    const char *name, *extension, *rest;
  };
  const Row rows[] = {
      {"Foo.app", "app", "Foo"},
      {"Foo.app/", "app", "Foo"},
      {"/Applications/Foo.app/", "app", "Foo"},
      {"Foo.APP", "APP", "Foo"},
      {"archive.tar.gz", "gz", "archive.tar"},
      {".app", "", ".app"},
      {".hidden", "", ".hidden"},
      {".hidden.component", "component", ".hidden"},
      {"a.b.", "", "a.b."},
      {"file.", "", "file."},
      {"..ext", "", "..ext"},
      {"...ext", "", "...ext"},
      {"..", "", ".."},
      {".", "", "."},
      {"/", "", "/"},
      {"Mr. Smith", "", "Mr. Smith"},
      {"Foo 1.2 Beta", "", "Foo 1.2 Beta"},
      {"Foo 1.2", "2", "Foo 1"},
      {"Foo v1.0 (x).app", "app", "Foo v1.0 (x)"},
      {"plain", "", "plain"},
      {"/a.b/plain", "", "plain"},
      {"", "", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Path(row.name).extension(), row.extension) << row.name;
    EXPECT_EQ(Path(row.name).nameWithoutExtension(), row.rest) << row.name;
  }
}

TEST(Path, anExtensionThatHoldsAWritingDirectionIsNone) {
  const char* controls[] = {"\u061C", "\u200E", "\u200F", "\u202A", "\u202B", "\u202C",
                            "\u202D", "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"};
  for (const std::string control : controls)
    EXPECT_EQ(Path("Foo.a" + control + "pp").extension(), "") << control;
  EXPECT_EQ(Path("Foo.\u2065").extension(), "\u2065");
  EXPECT_EQ(Path("Foo\u202E.app").extension(), "app");
}

TEST(Path, simplifyingIsDoneOnTheTextAlone) {
  const std::pair<const char*, const char*> rows[] = {
      {"/Applications//Foo.app/", "/Applications/Foo.app"},
      {"/Applications/./Foo.app", "/Applications/Foo.app"},
      {"/Applications/../Volumes/X", "/Volumes/X"},
      {"/../../a", "/a"},
      {"/", "/"},
      {"/..", "/"},
      {"/a/b/../../..", "/"},
      {"/a/..b/.c/...", "/a/..b/.c/..."},
      {"/private/System/foo", "/private/System/foo"},
      {"./a//b", "a/b"},
      {"a/../b", "b"},
      {"../a", "../a"},
      {"../../a/..", "../.."},
      {"a/..", ""},
      {"", ""},
  };
  for (const auto& [path, result] : rows) EXPECT_EQ(Path(path).simplified().text(), result) << path;
}

TEST(Path, equalityGoesByBytes) {
  EXPECT_NE(Path("/\u00E9"), Path("/e\u0301"));
  EXPECT_NE(Path("/Foo"), Path("/foo"));
}

}  // namespace quarn
