#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/Documents.h"

using documents::errorOf;
using Kind = toml::TOMLError::Reason::Kind;

namespace {

const char* const document = R"(name = "quarn"
count = 3
[owner]
born = 1979-05-27
lists = [[1, 2], ["x"], [{deep = true}, 5]]
[[items]]
id = 1
[[items]]
id = 2
)";

}  // namespace

TEST(TOMLTable, valuesAreReadByKey) {
  const toml::TOMLTable root(document);
  EXPECT_EQ(root.value<std::string>("name"), "quarn");
  EXPECT_EQ(root.value<std::int64_t>("count"), 3);
  EXPECT_EQ(root.table("owner").value<toml::LocalDate>("born"), toml::LocalDate(1979, 5, 27));
  EXPECT_EQ(root.keys(), (std::vector<std::string>{"name", "count", "items", "owner"}));
}

TEST(TOMLTable, itKnowsWhetherItHasAKeyAndWhichTableItIs) {
  const toml::TOMLTable root(document);
  EXPECT_FALSE(root.isKeyed);
  EXPECT_EQ(root.index, 0u);
  EXPECT_TRUE(root.table("owner").isKeyed);
  EXPECT_FALSE(root.array("items").table(0).isKeyed);
  EXPECT_TRUE(root.array("items").isKeyed);
}

TEST(TOMLTable, itOutlivesTheRoot) {
  const toml::TOMLTable owner = toml::TOMLTable(document).table("owner");
  EXPECT_EQ(owner.value<toml::LocalDate>("born").year, 1979);
}

TEST(TOMLTable, whatIsMissingOrOfAnotherKindIsTold) {
  const toml::TOMLTable root(document);
  EXPECT_EQ(errorOf([&] { root.value<bool>("x"); }), "Key 'x' not found in table while looking for boolean");
  EXPECT_EQ(errorOf([&] { root.table("x"); }), "Key 'x' not found in table while looking for table");
  EXPECT_EQ(errorOf([&] { root.array("name"); }),
            "(Line 1) Type mismatch at table key 'name': expected array, found string");
  EXPECT_EQ(errorOf([&] { root.value<double>("owner"); }),
            "(Line 3) Type mismatch at table key 'owner': expected float, found table");
  EXPECT_EQ(errorOf([&] { root.table("items"); }),
            "(Line 6) Type mismatch at table key 'items': expected table, found array");
}

TEST(TOMLTable, theLineOfATransformedKeyIsThatOfTheKeyInTheSource) {
  const toml::TOMLTable root("\n\n[a]\n", [](std::string_view key) { return "long_" + std::string(key); });
  EXPECT_EQ(errorOf([&] { root.array("long_a"); }),
            "(Line 3) Type mismatch at table key 'long_a': expected array, found table");
}

TEST(TOMLArray, elementsAreReadByIndex) {
  const toml::TOMLArray lists = toml::TOMLTable(document).table("owner").array("lists");
  ASSERT_EQ(lists.size(), 3u);
  EXPECT_EQ(lists.array(0).value<std::int64_t>(1), 2);
  EXPECT_EQ(lists.array(1).value<std::string>(0), "x");
  EXPECT_TRUE(lists.array(2).table(0).value<bool>("deep"));
  EXPECT_EQ(toml::TOMLTable(document).array("items").table(1).value<std::int64_t>("id"), 2);
}

TEST(TOMLArray, whatIsBeyondTheEndOrOfAnotherKindIsTold) {
  const toml::TOMLArray lists = toml::TOMLTable(document).table("owner").array("lists");
  EXPECT_EQ(errorOf([&] { lists.array(3); }), "Array index 3 is out of bounds (0..<3)");
  EXPECT_EQ(errorOf([&] { lists.value<bool>(0); }),
            "(Line 5) Type mismatch at array index 0: expected boolean, found array");
  EXPECT_EQ(errorOf([&] { lists.array(2).array(0); }),
            "(Line 5) Type mismatch at array index 0: expected array, found table");
  EXPECT_EQ(errorOf([&] { lists.array(0).table(1); }),
            "(Line 5) Type mismatch at array index 1: expected table, found integer");
}

TEST(TOMLArray, itKnowsTheKindOfItsElements) {
  const auto kindOf = [](const std::string& array) {
    return toml::TOMLTable("a = " + array).array("a").kind();
  };
  using ArrayKind = toml::InternalTOMLArray::Kind;
  EXPECT_EQ(kindOf("[]"), ArrayKind::none);
  EXPECT_EQ(kindOf("[1, 'x']"), ArrayKind::value);
  EXPECT_EQ(kindOf("[[], [1]]"), ArrayKind::array);
  EXPECT_EQ(kindOf("[{}, {}]"), ArrayKind::table);
  EXPECT_EQ(kindOf("[{}, 1, {}]"), ArrayKind::mixed);
  EXPECT_EQ(toml::TOMLTable(document).array("items").kind(), ArrayKind::table);
}

TEST(DirectReads, whatMayBeMissingHasADefaultOrIsOptional) {
  const toml::TOMLTable root(document);
  EXPECT_EQ(root.valueOr<std::int64_t>("count", 7), 3);
  EXPECT_EQ(root.valueOr<std::int64_t>("x", 7), 7);
  EXPECT_EQ(root.valueIfPresent<std::string>("name"), "quarn");
  EXPECT_EQ(root.valueIfPresent<std::string>("x"), std::nullopt);
  EXPECT_TRUE(root.tableIfPresent("owner") && !root.tableIfPresent("x"));
  EXPECT_TRUE(root.arrayIfPresent("items") && !root.arrayIfPresent("x"));
  EXPECT_FALSE(root.find("x"));
  EXPECT_EQ(root.find("name")->value<std::string>(), "quarn");
  const toml::TOMLArray numbers = root.table("owner").array("lists").array(0);
  EXPECT_EQ(numbers.valueOr<std::int64_t>(1, 9), 2);
  EXPECT_EQ(numbers.valueOr<std::int64_t>(2, 9), 9);
  EXPECT_EQ(numbers.valueIfPresent<std::int64_t>(2), std::nullopt);
}

TEST(DirectReads, whatIsThereAndHasAnotherTypeIsAnErrorThereToo) {
  const toml::TOMLTable root(document);
  EXPECT_NE(errorOf([&] { root.valueOr<bool>("count", true); }), "no error");
  EXPECT_NE(errorOf([&] { root.valueIfPresent<bool>("owner"); }), "no error");
  EXPECT_NE(errorOf([&] { root.tableIfPresent("name"); }), "no error");
  EXPECT_NE(errorOf([&] { root.arrayIfPresent("name"); }), "no error");
}

TEST(DirectReads, aTableIsGoneThroughInTheOrderOfItsKeys) {
  std::vector<std::string> keys;
  std::string kinds;
  for (const auto& [key, item] : toml::TOMLTable(std::string("c = 1\n") + document)) {
    keys.emplace_back(key);
    kinds += item.isValue() ? 'v' : item.isArray() ? 'a' : item.isTable() ? 't' : '?';
  }
  EXPECT_EQ(keys, (std::vector<std::string>{"c", "name", "count", "items", "owner"}));
  EXPECT_EQ(kinds, "vvvat");
  for (const auto& [key, item] : toml::TOMLTable("[a]\n[b.c]\nd = 1\n")) {
    EXPECT_EQ(item.table().keys().size(), key == "a" ? 0u : 1u);
  }
  for (const auto& [key, item] : toml::TOMLTable("")) FAIL() << key << item.isValue();
}

TEST(DirectReads, anArrayIsGoneThroughFromFrontToBack) {
  std::int64_t sum = 0;
  for (const toml::TOMLItem& item : toml::TOMLTable("a = [1, 20, 300]").array("a")) {
    EXPECT_EQ(item.valueKind(), toml::ValueKind::integer);
    sum += item.value<std::int64_t>();
  }
  EXPECT_EQ(sum, 321);
  for (const toml::TOMLItem& item : toml::TOMLTable(document).array("items")) {
    sum += item.table().value<std::int64_t>("id");
  }
  EXPECT_EQ(sum, 324);
  for (const toml::TOMLItem& item : toml::TOMLTable("a = []").array("a")) FAIL() << item.isValue();
}

TEST(DirectReads, theirErrorsHaveLineAndPath) {
  const toml::TOMLTable root(std::string(document) + "[[items.more]]\n[[items.more]]\nbad = foo\n");
  const auto known = [](const auto& work) -> std::string {
    try {
      work();
    } catch (const toml::TOMLError& error) {
      return error.what();
    }
    return "no error";
  };
  const toml::TOMLArray lists = root.table("owner").array("lists");
  const toml::TOMLTable more = root.array("items").table(1).array("more").table(1);
  EXPECT_EQ(known([&] { root.table("owner").value<bool>("x"); }),
            "(Line 3) Key 'x' not found in table while looking for boolean (at owner.x)");
  EXPECT_EQ(known([&] { lists.array(2).value<std::string>(1); }),
            "(Line 5) Invalid string: 5 (found integer, at owner.lists[2][1])");
  EXPECT_EQ(known([&] { lists.array(9); }),
            "(Line 5) Array index 9 is out of bounds (0..<3) (at owner.lists[9])");
  EXPECT_EQ(
      known([&] { more.array("bad"); }),
      "(Line 12) Type mismatch at table key 'bad': expected array, found value (at items[1].more[1].bad)");
  EXPECT_EQ(
      known([&] { more.valueKindOf("bad"); }),
      "(Line 12) The given data was not valid TOML. Key 'bad' has the value 'foo' (at items[1].more[1].bad)");
  EXPECT_EQ(known([&] { root.value<std::int64_t>("name"); }),
            "(Line 1) Invalid integer: invalid digit for base 10: '\"' (found string, at name)");
  EXPECT_EQ(known([&] { root.fail("count", "is odd"); }), "(Line 2) is odd (at count)");
  EXPECT_EQ(known([&] { more.fail("good", "is missing"); }),
            "(Line 11) is missing (at items[1].more[1].good)");
  EXPECT_EQ(known([&] { (*lists.begin()).array().begin().operator*().table(); }),
            "(Line 5) Type mismatch at array index 0: expected table, found integer (at owner.lists[0][0])");
  EXPECT_EQ(known([&] { (*lists.begin()).fail("is too short"); }),
            "(Line 5) is too short (at owner.lists[0])");
}
