#include <type_traits>

#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/Documents.h"

using documents::errorOf;
using toml::Decoding;
using toml::TOMLDecoder;
using toml::TOMLError;
using toml::TOMLKey;
using Kind = toml::TOMLError::Reason::Kind;

namespace {

struct Tool {
  std::string id;
  bool track;
  std::vector<std::string> kinds;
  bool scripts;
  std::optional<int> size;

  static Tool decode(const Decoding& from) {
    const auto keyed = from.keyed();
    return {keyed.decode<std::string>("id"), keyed.decode<bool>("track"),
            keyed.decode<std::vector<std::string>>("kinds"),
            keyed.decodeIfPresent<bool>("scripts").value_or(false), keyed.decode<std::optional<int>>("size")};
  }

  bool operator==(const Tool&) const = default;
};

/// A record that is no table: a text with a colon.
struct Pair {
  std::string key;
  std::string value;

  static Pair decode(const Decoding& from) {
    const auto text = from.decode<std::string>();
    return {text.substr(0, text.find(':')), text.substr(text.find(':') + 1)};
  }

  bool operator==(const Pair&) const = default;
};

struct Base {
  int number;

  static Base decode(const Decoding& from) { return {from.keyed().decode<int>("number")}; }
};

struct Derived : Base {
  std::string name;

  static Derived decode(const Decoding& from) {
    const auto keyed = from.keyed();
    return {Base::decode(keyed.superDecoder()), keyed.decode<std::string>("name")};
  }
};

struct Node {
  std::vector<Node> children;

  static Node decode(const Decoding& from) {
    return {from.keyed().decodeIfPresent<std::vector<Node>>("a").value_or(std::vector<Node>{})};
  }
};

struct Unreadable {
  int number = 0;
};

static_assert(toml::Decodable<Tool>);
static_assert(toml::Decodable<std::map<std::string, std::vector<std::optional<Tool>>>>);
static_assert(toml::Decodable<unsigned char> && toml::Decodable<float> && toml::Decodable<toml::Date>);
static_assert(!toml::Decodable<Unreadable>);
static_assert(!toml::Decodable<std::vector<Unreadable>>);
static_assert(!toml::Decodable<char> && !toml::Decodable<const char*>);
static_assert(!toml::Decodable<std::map<int, int>>);

/// What `work` throws; ends the test if it throws nothing.
template <typename Work>
TOMLError thrownBy(const Work& work) {
  try {
    work();
  } catch (const TOMLError& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return TOMLError({.kind = Kind::internalError});
}

/// The containers that `work` asks for, out of the root of a document.
template <typename Work>
struct Probe {
  static Probe decode(const Decoding& from) {
    Work()(from);
    return {};
  }
};

template <typename Work>
std::string probe(const std::string& document, const Work&) {
  return errorOf([&] { TOMLDecoder().decode<Probe<Work>>(document); });
}

}  // namespace

TEST(TOMLDecoder, aRecordIsDecodedFromATable) {
  const Tool tool = TOMLDecoder().decode<Tool>("id = \"x\"\ntrack = true\nkinds = [\"a\", 'b']\nsize = 7");
  EXPECT_EQ(tool, (Tool{"x", true, {"a", "b"}, false, 7}));
}

TEST(TOMLDecoder, listsMapsAndOptionalsNest) {
  using Tools = std::map<std::string, std::vector<Tool>>;
  const auto tools = TOMLDecoder().decode<Tools>(
      "[[one]]\nid='x'\ntrack=true\nkinds=[]\n[[one]]\nid='y'\ntrack=false\nkinds=[]\nscripts=true\n");
  const Tools expected = {
      {"one", {{"x", true, {}, false, std::nullopt}, {"y", false, {}, true, std::nullopt}}}};
  EXPECT_EQ(tools, expected);
  const auto lists =
      TOMLDecoder().decode<std::map<std::string, std::vector<std::vector<int>>>>("a = [[1], [], [2, 3]]");
  EXPECT_EQ(lists.at("a"), (std::vector<std::vector<int>>{{1}, {}, {2, 3}}));
}

TEST(TOMLDecoder, aRecordMayBeAValue) {
  const auto pairs = TOMLDecoder().decode<std::map<std::string, std::vector<Pair>>>("a = ['x:1', 'y:2']");
  EXPECT_EQ(pairs.at("a"), (std::vector<Pair>{{"x", "1"}, {"y", "2"}}));
}

TEST(TOMLDecoder, theShareOfAParentTypeStandsUnderSuper) {
  const auto derived = TOMLDecoder().decode<Derived>("name = 'n'\n[super]\nnumber = 4");
  EXPECT_EQ(derived.number, 4);
  EXPECT_EQ(derived.name, "n");
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<Derived>("name = 'n'"); }),
            "No value associated with key for 'super'");
  const auto error = thrownBy([] { TOMLDecoder().decode<Derived>("name = 'n'\n[super]\nnumber = ''"); });
  EXPECT_EQ(error.codingPath, (std::vector<TOMLKey>{TOMLKey::Super{}, {"number"}}));
  EXPECT_EQ(probe("\nsuper = []", [](const Decoding& from) { from.keyed().superDecoder().decode<int>(); }),
            "(Line 2) Type mismatch at table key for 'super': expected integer, found array");
}

TEST(TOMLDecoder, aMissingKeyIsTold) {
  const auto error = thrownBy([] { TOMLDecoder().decode<std::map<std::string, Tool>>("[a]\nid = 'x'"); });
  EXPECT_EQ(error.reason.kind, Kind::keyNotFoundInTable);
  EXPECT_EQ(error.reason.key, "track");
  EXPECT_EQ(error.text(), "No value associated with key track");
  EXPECT_EQ(error.codingPath, (std::vector<TOMLKey>{{"a"}, {"track"}}));
}

TEST(TOMLDecoder, aWrongTypeIsToldWithItsPath) {
  const std::string start = "[[tools]]\nid = 'x'\ntrack = true\n";
  const auto decode = [&](const std::string& line) {
    return std::string(thrownBy([&] {
                         TOMLDecoder().decode<std::map<std::string, std::vector<Tool>>>(start + line);
                       }).what());
  };
  EXPECT_EQ(decode("kinds = 3"),
            "(Line 4) Cannot get unkeyed decoding container -- found integer (at tools[0].kinds)");
  EXPECT_EQ(decode("kinds = {}"),
            "(Line 4) Cannot get unkeyed decoding container -- found table (at tools[0].kinds)");
  EXPECT_EQ(decode("kinds = [\n'a',\n1]"),
            "(Line 6) Invalid string: 1 (found integer, at tools[0].kinds[1])");
  EXPECT_EQ(decode("kinds = [[]]"),
            "(Line 4) Type mismatch at array index 0: expected string, found array (at tools[0].kinds[0])");
  EXPECT_EQ(decode("kinds = []\nscripts = 1"),
            "(Line 5) Invalid boolean: 1 (found integer, at tools[0].scripts)");
  EXPECT_EQ(decode("kinds = []\n[tools.size]"),
            "(Line 5) Type mismatch at table key 'size': expected integer, found table (at tools[0].size)");
}

TEST(TOMLDecoder, aTableIsAskedForWhereThereIsNone) {
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<std::map<std::string, Tool>>("\na = [1]"); }),
            "(Line 2) Cannot get keyed decoding container -- found array");
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<std::vector<Tool>>("a = 1"); }),
            "(Line 1) Cannot get unkeyed decoding container -- found table");
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<int>("a = 1"); }), "(Line 1) Expected integer, found table");
}

TEST(TOMLDecoder, aDateRecordIsPartOfALargerRecord) {
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<toml::LocalDate>("a = 1979-05-27"); }),
            "This type is not generally codable. Use TOMLDecoder to decode it as part of a larger "
            "Codable.");
  const auto days = TOMLDecoder().decode<std::map<std::string, toml::LocalDate>>("a = 1979-05-27");
  EXPECT_EQ(days.at("a"), toml::LocalDate(1979, 5, 27));
}

TEST(TOMLDecoder, aWrongDocumentIsRefusedWithItsLine) {
  EXPECT_EQ(errorOf([] { TOMLDecoder().decode<Tool>("id = 'x'\ntrack"); }),
            "(Line 2) Syntax error: expected = behind the key");
}

TEST(TOMLDecoder, itHandsItsUserInfoToEveryRecord) {
  struct Reader {
    int found;
    static Reader decode(const Decoding& from) { return {std::any_cast<int>(from.userInfo().at("answer"))}; }
  };
  TOMLDecoder decoder;
  decoder.userInfo["answer"] = 42;
  EXPECT_EQ((decoder.decode<std::map<std::string, std::vector<Reader>>>("a = [1]").at("a")[0].found), 42);
}

TEST(TOMLDecoder, recordsOfTheirOwnTypeEndAtADepth) {
  // Every list takes one level, and every record in it another one.
  const auto decode = [](const std::string& innermost) {
    std::string document = innermost;
    for (std::size_t i = 0; i < 256; ++i) document = "a = [{" + document + "}]";
    return errorOf([&] { TOMLDecoder().decode<Node>(document); });
  };
  EXPECT_EQ(decode(""), "no error");
  EXPECT_EQ(decode("a = []"), "(Line 1) Nested deeper than 512 levels.");
  EXPECT_EQ(decode("a = [{a = [{a = []}]}]"), "(Line 1) Nested deeper than 512 levels.");
}

TEST(KeyedDecodingContainer, itTellsItsKeysAndItsPath) {
  EXPECT_EQ(probe("[x.y]\nb = 1\na = [2]\nc = {}",
                  [](const Decoding& from) {
                    const auto keyed = from.keyed().nestedContainer("x").nestedContainer("y");
                    EXPECT_EQ(keyed.allKeys(), (std::vector<std::string>{"b", "a", "c"}));
                    EXPECT_EQ(keyed.codingPath(), (std::vector<TOMLKey>{{"x"}, {"y"}}));
                    EXPECT_TRUE(keyed.contains("a"));
                    EXPECT_FALSE(keyed.contains("x"));
                    EXPECT_EQ(keyed.decodeIfPresent<int>("x"), std::nullopt);
                    EXPECT_EQ(keyed.nestedUnkeyedContainer("a").decode<int>(), 2);
                    EXPECT_EQ(keyed.superDecoder("b").decode<int>(), 1);
                  }),
            "no error");
}

TEST(KeyedDecodingContainer, whatIsNotNestedIsTold) {
  EXPECT_EQ(probe("a = 1", [](const Decoding& from) { from.keyed().nestedContainer("a"); }),
            "(Line 1) Cannot get keyed decoding container -- found integer");
  EXPECT_EQ(probe("a = 1", [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a"); }),
            "(Line 1) Cannot get unkeyed decoding container -- found integer");
  EXPECT_EQ(probe("a = 1", [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("b"); }),
            "No value associated with key b");
}

TEST(UnkeyedDecodingContainer, itGoesFromElementToElement) {
  EXPECT_EQ(probe("a = [1, {b = 2}, [3], 'x']",
                  [](const Decoding& from) {
                    auto unkeyed = from.keyed().nestedUnkeyedContainer("a");
                    EXPECT_EQ(unkeyed.count(), 4u);
                    EXPECT_EQ(unkeyed.decode<int>(), 1);
                    EXPECT_EQ(unkeyed.nestedContainer().decode<int>("b"), 2);
                    const auto inner = unkeyed.nestedUnkeyedContainer();
                    EXPECT_EQ(inner.codingPath(), (std::vector<TOMLKey>{{"a"}, {std::size_t{2}}}));
                    EXPECT_EQ(unkeyed.currentIndex(), 3u);
                    EXPECT_EQ(errorOf([&] { unkeyed.decode<int>(); }),
                              "(Line 1) Invalid integer: invalid digit for base 10: '''");
                    EXPECT_EQ(unkeyed.superDecoder().decode<std::string>(), "x");
                    EXPECT_TRUE(unkeyed.isAtEnd());
                    EXPECT_EQ(unkeyed.decodeIfPresent<int>(), std::nullopt);
                  }),
            "no error");
}

TEST(UnkeyedDecodingContainer, theEndAndWrongElementsAreTold) {
  const std::string atEnd = "(Line 2) Unkeyed container is at end.";
  EXPECT_EQ(
      probe("\na = []", [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").decode<int>(); }),
      atEnd);
  EXPECT_EQ(probe("\na = []",
                  [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").nestedContainer(); }),
            atEnd);
  EXPECT_EQ(probe("\na = []",
                  [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").superDecoder(); }),
            atEnd);
  EXPECT_EQ(
      probe("\na = []",
            [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").nestedUnkeyedContainer(); }),
      "(Line 2) Cannot get nested unkeyed container -- unkeyed container is at end.");
  EXPECT_EQ(
      probe("a = [\n\n{}]",
            [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").nestedUnkeyedContainer(); }),
      "(Line 3) Cannot get nested unkeyed container -- element is not an array.");
  EXPECT_EQ(probe("a = [\n[]]",
                  [](const Decoding& from) { from.keyed().nestedUnkeyedContainer("a").nestedContainer(); }),
            "(Line 2) Element is not a table.");
}
