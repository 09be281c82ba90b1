#include <algorithm>
#include <set>

#include "TOMLDecoder/internal/KeyHash.h"
#include "tests/toml/Documents.h"

using toml::fastKeyHash;

TEST(KeyHash, aKeyOfUpToEightBytesIsItsBytesWithTheFirstLowest) {
  EXPECT_EQ(fastKeyHash(""), 0u);
  EXPECT_EQ(fastKeyHash("a"), 0x61u);
  EXPECT_EQ(fastKeyHash("abc"), 0x636261u);
  EXPECT_EQ(fastKeyHash("abcd"), 0x64636261u);
  EXPECT_EQ(fastKeyHash("abcdefg"), 0x67666564636261u);
  EXPECT_EQ(fastKeyHash("abcdefgh"), 0x6867666564636261u);
  EXPECT_EQ(fastKeyHash("\xC3\xA9"), 0xA9C3u);
}

TEST(KeyHash, aKeyOfNineBytesIsHashedByFNV1a) {
  std::uint64_t expected = 0xcbf29ce484222325;
  for (const char byte : std::string("abcdefghi")) {
    expected ^= static_cast<unsigned char>(byte);
    expected *= 0x100000001b3;
  }
  EXPECT_EQ(fastKeyHash("abcdefghi"), expected);
  EXPECT_EQ(fastKeyHash("chongo was here!\n"), 0x46810940eff5f915u);
}

TEST(KeyHash, theFilterHasABitForEachSixBitsOfTheHash) {
  EXPECT_EQ(toml::bloomBits(0), 1u);
  EXPECT_EQ(toml::bloomBits(5 | (7 << 6)), (1u << 5) | (1u << 7));
  EXPECT_EQ(toml::bloomBits(63 | (std::uint64_t{63} << 6) | (std::uint64_t{1} << 12)),
            std::uint64_t{1} << 63);
}

TEST(KeyHash, aTableFiltersWhatItHolds) {
  const toml::TOMLTable table("ab = 1\ncd = 2\n[longer_key_than_eight]\n");
  const std::uint64_t bloom = table.source->tables[0].keyHashBloom;
  const std::uint64_t expected = toml::bloomBits(fastKeyHash("ab")) | toml::bloomBits(fastKeyHash("cd")) |
                                 toml::bloomBits(fastKeyHash("longer_key_than_eight"));
  EXPECT_EQ(bloom, expected);
}

TEST(LargeTables, everyKeyIsFoundAndNoOther) {
  for (const int count : {1, 23, 24, 25, 26, 300, 5000}) {
    std::string document;
    for (int i = 0; i < count; ++i) document += "key" + std::to_string(i) + " = " + std::to_string(i) + "\n";
    const toml::TOMLTable table(document);
    for (int i = 0; i < count; ++i) EXPECT_EQ(table.value<std::int64_t>("key" + std::to_string(i)), i);
    EXPECT_FALSE(table.contains("key" + std::to_string(count)));
    EXPECT_FALSE(table.contains("key"));
    EXPECT_EQ(table.keys().size(), static_cast<std::size_t>(count));
  }
}

TEST(LargeTables, valuesArraysAndTablesShareOneIndex) {
  std::string document;
  for (int i = 0; i < 200; ++i) {
    const std::string number = std::to_string(i);
    document += "value_number_" + number + " = 1\narray_number_" + number + " = []\n";
  }
  for (int i = 0; i < 200; ++i) {
    document += "[table_number_" + std::to_string(i) + "]\n[[list" + std::to_string(i) + "]]\n";
  }
  const toml::TOMLTable table(document);
  using Kind = toml::Entry::Kind;
  for (int i = 0; i < 200; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(table.kindOf("value_number_" + number), Kind::value);
    EXPECT_EQ(table.kindOf("array_number_" + number), Kind::array);
    EXPECT_EQ(table.kindOf("table_number_" + number), Kind::table);
    EXPECT_EQ(table.kindOf("list" + number), Kind::array);
    EXPECT_EQ(table.kindOf("list_" + number), Kind::none);
  }
  const std::string line =
      "(Line " + std::to_string(std::count(document.begin(), document.end(), '\n') + 1) + ") ";
  EXPECT_EQ(documents::parseErrorOf(document + "[value_number_7]"),
            line + "Syntax error: key-value already exists");
  EXPECT_EQ(documents::parseErrorOf(document + "[array_number_7]"), line + "Key already exists.");
  EXPECT_EQ(documents::parseErrorOf(document + "[table_number_7]"),
            line + "Syntax error: cannot insert new entry into existing table");
  EXPECT_EQ(documents::parseErrorOf("key = 1\n" + document.substr(0, document.find("[table")) +
                                    "value_number_7 = 1"),
            "(Line 402) Key already exists.");
}

TEST(Tables, keysThatTheFilterCannotTellApartAreToldApart) {
  std::string document;
  std::set<std::string> keys;
  for (int i = 0; i < 20; ++i) keys.insert("aa" + std::to_string(i));
  for (const std::string& key : keys) document += key + " = \"" + key + "\"\n";
  const toml::TOMLTable table(document);
  for (const std::string& key : keys) EXPECT_EQ(table.value<std::string>(key), key);
  EXPECT_FALSE(table.contains("aa20"));
}

TEST(Tables, keysOfOneHashAreToldApartByTheirText) {
  const std::pair<const char*, const char*> twins[] = {{"longer-key-2077", "longer-key-86386"},
                                                       {"longer-key-508", "longer-key-95178"},
                                                       {"longer-key-105714", "longer-key-148113"}};
  for (const auto& [one, other] : twins) {
    ASSERT_EQ(toml::keptHash(fastKeyHash(one)), toml::keptHash(fastKeyHash(other)));
    EXPECT_NE(toml::indexHash(one), toml::indexHash(other));
    std::string many;
    for (int i = 0; i < 40; ++i) many += "k" + std::to_string(i) + " = 0\n";
    for (const std::string& rest : {std::string(), many}) {
      const std::string alone = std::string(one) + " = 1\n" + rest;
      EXPECT_FALSE(toml::TOMLTable(alone).contains(other));
      const toml::TOMLTable both(alone + other + " = 2\n");
      EXPECT_EQ(both.value<std::int64_t>(one), 1);
      EXPECT_EQ(both.value<std::int64_t>(other), 2);
    }
  }
}

TEST(KeyHash, anIndexPutsEqualKeysInOnePlaceAndOthersApart) {
  std::set<std::uint32_t> places;
  for (int i = 0; i < 1000; ++i) {
    const std::string key(static_cast<std::size_t>(i % 40), 'k');
    places.insert(toml::indexHash(key));
  }
  EXPECT_EQ(places.size(), 40u);
}
