#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <set>

#include "QuarnCore/installer/PathSet.h"

namespace quarn {
namespace {

using List = std::vector<std::string>;

List listed(const PathSet& paths) {
  List list;
  for (PathSet::Cursor at(paths); at.next();) list.emplace_back(at.path());
  return list;
}

/// "/" is below every other byte, also below those that are below it elsewhere.
const List inPathOrder = {"/",          "/A",         "/A/Foo",      "/A/Foo/ x",       "/A/Foo/Foo",
                          "/A/Foo/x",   "/A/Foo\nx",  "/A/Foo bar",  "/A/Foo bar/x",    "/A/Foo!",
                          "/A/Foo-",    "/A/Foo.app", "/A/Foo.app/", "/A/Foo.app/\x7F", "/A/Foo0",
                          "/A/Foo\x7F", "/A/Foo\x80", "/A/Foo\xFF",  "/A/Fop",          "/B"};

TEST(PathSets, areInPathOrderAndHoldEachPathOnce) {
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    List mixed = inPathOrder;
    mixed.insert(mixed.end(), inPathOrder.begin(), inPathOrder.end());
    std::shuffle(mixed.begin(), mixed.end(), random);
    const PathSet paths(mixed);
    ASSERT_EQ(listed(paths), inPathOrder);
    EXPECT_EQ(paths.count(), inPathOrder.size());
    EXPECT_EQ(paths.last(), "/B");
  }
}

TEST(PathSets, withoutAPathAreEmpty) {
  for (const PathSet& paths : {PathSet(), PathSet(List{}), PathSet(List{""})}) {
    PathSet::Cursor at(paths);
    EXPECT_FALSE(at.next());
    EXPECT_EQ(at.path(), "");
    EXPECT_FALSE(at.next());
    EXPECT_EQ(paths.count(), 0u);
    EXPECT_EQ(paths.last(), "");
  }
}

TEST(PathSets, areEqualIfTheyHoldTheSamePaths) {
  PathSet appended;
  for (const auto& path : inPathOrder) EXPECT_TRUE(appended.append(path));
  const List reversed(inPathOrder.rbegin(), inPathOrder.rend());
  EXPECT_EQ(appended, PathSet(reversed));
  EXPECT_NE(appended, PathSet(List(inPathOrder.begin(), inPathOrder.end() - 1)));
  EXPECT_NE(PathSet({"/a", "/b"}), PathSet({"/a", "/c"}));
}

TEST(PathSets, takeAtTheirEndOnlyWhatComesBehind) {
  PathSet paths({"/A/Foo", "/A/Foo bar"});
  for (const char* path : {"/A/Foo bar", "/A/Foo", "/A/Foo/x", "/A", ""}) EXPECT_FALSE(paths.append(path));
  EXPECT_EQ(paths, PathSet({"/A/Foo", "/A/Foo bar"}));
  EXPECT_TRUE(paths.append("/A/Foo bar/x"));
  EXPECT_EQ(listed(paths), (List{"/A/Foo", "/A/Foo bar", "/A/Foo bar/x"}));
}

TEST(PathSets, takePathsOfAnyLength) {
  List paths;
  std::string path;
  // What two share, and what they don't, then takes one, two and three bytes to say.
  for (const std::size_t length :
       {1u, 126u, 127u, 128u, 129u, 255u, 256u, 16'383u, 16'384u, 16'385u, 70'000u}) {
    path = "/" + std::string(length - 1, 'a');
    paths.push_back(path);
    paths.push_back(path + "/b");
    paths.push_back(path + "/" + std::string(length, 'c'));
  }
  std::sort(paths.begin(), paths.end());
  paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
  const PathSet set(paths);
  EXPECT_EQ(listed(set), paths) << "no byte in these is below \"/\"";
}

TEST(PathSets, tellWhatLiesBelow) {
  for (const char* below : {"/A/x", "/A/x/y", "/A//"}) EXPECT_TRUE(isBelow(below, "/A")) << below;
  for (const char* beside : {"/A", "/Ab", "/A b", "/", "/B/A/x", ""}) EXPECT_FALSE(isBelow(beside, "/A"));
  EXPECT_TRUE(isBelow("/A", "/"));
  EXPECT_FALSE(isBelow("/", "/"));
  EXPECT_FALSE(isBelow("/A", ""));
}

/// Few different names in few folders, so that paths share much and sets have much in common.
std::set<std::string> someTexts(std::mt19937& random, std::size_t count) {
  const List names = {"a", "aa", "a b", "a-", "a.app", "b", "\xFF", "\x01", "Contents", "a\nb"};
  std::set<std::string> texts;
  for (std::size_t i = 0; i < count; ++i) {
    std::string path;
    for (std::size_t depth = random() % 5 + 1; depth > 0; --depth)
      path += "/" + names[random() % names.size()];
    texts.insert(path);
  }
  return texts;
}

/// By names and not by bytes, which is another way to say the same.
List byNames(List paths) {
  std::sort(paths.begin(), paths.end(), [](const std::filesystem::path& a, const std::filesystem::path& b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
  });
  return paths;
}

TEST(PathSets, areUnitedAndDifferAsSetsOfTextsDo) {
  std::mt19937 random(11);
  for (int round = 0; round < 500; ++round) {
    const auto a = someTexts(random, random() % 60);
    const auto b = someTexts(random, random() % 60);
    const PathSet pathsOfA(List(a.begin(), a.end())), pathsOfB(List(b.begin(), b.end()));
    List both, onlyA;
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(onlyA));
    ASSERT_EQ(listed(pathsOfA), byNames({a.begin(), a.end()}));
    ASSERT_EQ(listed(united(pathsOfA, pathsOfB)), byNames(both));
    ASSERT_EQ(united(pathsOfA, pathsOfB), PathSet(both));
    ASSERT_EQ(difference(pathsOfA, pathsOfB), byNames(onlyA));
  }
}

TEST(PathSets, differFromThemselvesAndFromNothingAsSetsDo) {
  const PathSet paths(inPathOrder);
  EXPECT_EQ(difference(paths, paths), List{});
  EXPECT_EQ(difference(paths, PathSet()), inPathOrder);
  EXPECT_EQ(difference(PathSet(), paths), List{});
  EXPECT_EQ(united(paths, PathSet()), paths);
  EXPECT_EQ(united(PathSet(), paths), paths);
}

}  // namespace
}  // namespace quarn
