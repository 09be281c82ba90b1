#include "TOMLDecoder/TOMLArray.h"
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
            "(Line 1) Type mismatch at table key 'name': expected array");
  EXPECT_EQ(errorOf([&] { root.value<double>("owner"); }),
            "(Line 3) Type mismatch at table key 'owner': expected float");
  EXPECT_EQ(errorOf([&] { root.table("items"); }),
            "(Line 6) Type mismatch at table key 'items': expected table");
}

TEST(TOMLTable, theLineOfATransformedKeyIsThatOfTheKeyInTheSource) {
  const toml::TOMLTable root("\n\n[a]\n", [](std::string_view key) { return "long_" + std::string(key); });
  EXPECT_EQ(errorOf([&] { root.array("long_a"); }),
            "(Line 3) Type mismatch at table key 'long_a': expected array");
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
            "(Line 5) Type mismatch at array index 0: expected boolean");
  EXPECT_EQ(errorOf([&] { lists.array(2).array(0); }),
            "(Line 5) Type mismatch at array index 0: expected array");
  EXPECT_EQ(errorOf([&] { lists.array(0).table(1); }),
            "(Line 5) Type mismatch at array index 1: expected table");
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
