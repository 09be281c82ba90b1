#include <limits>

#include "QuarnCore/foundation/StoredJson.h"

namespace quarn {
namespace {

using StoredJson::Layout;
using namespace std::chrono_literals;

enum class Mood { calm, wild };

struct Item {
  std::string name;
  std::int64_t sizeBytes = 0;
  bool operator==(const Item&) const = default;
};

/// A member of every kind that can be stored.
struct Trip {
  std::string id;
  Mood mood = Mood::calm;
  std::int64_t bytes = 0;
  double share = 0;
  bool isDone = false;
  Moment startedAt;
  std::optional<std::string> note;
  std::optional<Moment> endedAt;
  Item first;
  std::vector<Item> items;
  std::vector<std::string> words;
  std::map<std::string, Item> named;
  std::map<std::string, std::vector<std::int64_t>> counts;
  bool operator==(const Trip&) const = default;
};

/// As `Trip` might have grown: its last three came later.
struct Grown {
  std::string id;
  Mood mood = Mood::wild;
  std::string target;
  std::vector<std::string> pending;
  bool operator==(const Grown&) const = default;
};

struct Forgetful {
  std::string kept;
  bool lost = false;
};
struct Doubled {
  std::string a;
  std::string b;
};
struct NamedTwice {
  std::string a;
  std::string b;
  bool c = false;
};
struct Constructed {
  explicit Constructed(std::string text) : a(std::move(text)) {}
  std::string a;
};

}  // namespace

template <>
inline constexpr auto rawValueRows<Mood> = std::to_array<RawValueRow<Mood>>({
    {Mood::calm, "calm"},
    {Mood::wild, "very wild"},
});

template <>
inline constexpr auto storedKeys<Item> = std::tuple{
    StoredKey{"name", &Item::name},
    StoredKey{"sizeBytes", &Item::sizeBytes},
};

template <>
inline constexpr auto storedKeys<Trip> = std::tuple{
    StoredKey{"id", &Trip::id},         StoredKey{"mood", &Trip::mood},
    StoredKey{"bytes", &Trip::bytes},   StoredKey{"share", &Trip::share},
    StoredKey{"isDone", &Trip::isDone}, StoredKey{"startedAt", &Trip::startedAt},
    StoredKey{"note", &Trip::note},     StoredKey{"endedAt", &Trip::endedAt},
    StoredKey{"first", &Trip::first},   StoredKey{"items", &Trip::items},
    StoredKey{"words", &Trip::words},   StoredKey{"named", &Trip::named},
    StoredKey{"counts", &Trip::counts},
};

template <>
inline constexpr auto storedKeys<Grown> = std::tuple{
    StoredKey{"id", &Grown::id},
    StoredKey{"mood", &Grown::mood, WhenAbsent::keepsDefault},
    StoredKey{"target", &Grown::target, WhenAbsent::keepsDefault},
    StoredKey{"pending", &Grown::pending, WhenAbsent::keepsDefault},
};

template <>
inline constexpr auto storedKeys<Forgetful> = std::tuple{StoredKey{"kept", &Forgetful::kept}};

template <>
inline constexpr auto storedKeys<Doubled> = std::tuple{
    StoredKey{"a", &Doubled::a},
    StoredKey{"a", &Doubled::b},
};

template <>
inline constexpr auto storedKeys<NamedTwice> = std::tuple{
    StoredKey{"a", &NamedTwice::a},
    StoredKey{"b", &NamedTwice::a},
    StoredKey{"c", &NamedTwice::c},
};

template <>
[[maybe_unused]] inline constexpr auto storedKeys<Constructed> = std::tuple{
    StoredKey{"a", &Constructed::a},
};

namespace {

// 2026-01-31T09:05:00Z
const Moment moment{std::chrono::seconds(1'769'850'300)};

Trip whole() {
  return {.id = "20260131_090500",
          .mood = Mood::wild,
          .bytes = 9'007'199'254'740'993,
          .share = 0.25,
          .isDone = true,
          .startedAt = moment,
          .note = "/a \u00e9",
          .endedAt = moment + 90s,
          .first = {"f", 1},
          .items = {{"g", 2}, {"h", 3}},
          .words = {"one", ""},
          .named = {{"k", {"i", 4}}},
          .counts = {{"none", {}}, {"some", {5, 6}}}};
}

template <class Value>
std::string written(const Value& value, Layout layout = Layout::compact,
                    DateForm dates = DateForm::secondsSince2001) {
  return StoredJson::write(value, layout, dates).orThrow();
}

template <class Value>
Value valueOf(const std::string& text, DateForm dates = DateForm::secondsSince2001) {
  return StoredJson::read<Value>(text, dates).orThrow();
}

/// The sentence with which reading fails.
template <class Value>
std::string failure(const std::string& text, DateForm dates = DateForm::secondsSince2001) {
  const auto value = StoredJson::read<Value>(text, dates);
  return value ? "read" : value.error().description;
}

TEST(StoredJson, isCompactInTheOrderOfTheMembers) {
  EXPECT_EQ(written(whole()),
            R"({"id":"20260131_090500","mood":"very wild","bytes":9007199254740993,"share":0.25,)"
            R"("isDone":true,"startedAt":791543100,"note":"\/a é","endedAt":791543190,)"
            R"("first":{"name":"f","sizeBytes":1},)"
            R"("items":[{"name":"g","sizeBytes":2},{"name":"h","sizeBytes":3}],"words":["one",""],)"
            R"("named":{"k":{"name":"i","sizeBytes":4}},"counts":{"none":[],"some":[5,6]}})");
}

TEST(StoredJson, isPrettyWithSortedKeys) {
  EXPECT_EQ(written(std::vector{Grown{"7", Mood::calm, "/Volumes/X9", {}}}, Layout::pretty),
            "[\n"
            "  {\n"
            "    \"id\" : \"7\",\n"
            "    \"mood\" : \"calm\",\n"
            "    \"pending\" : [\n"
            "\n"
            "    ],\n"
            "    \"target\" : \"\\/Volumes\\/X9\"\n"
            "  }\n"
            "]");
}

TEST(StoredJson, whatIsWrittenIsReadAgain) {
  for (const Layout layout : {Layout::pretty, Layout::compact}) {
    for (const DateForm dates : {DateForm::iso8601, DateForm::secondsSince2001}) {
      EXPECT_EQ(valueOf<Trip>(written(whole(), layout, dates), dates), whole());
      EXPECT_EQ(valueOf<Trip>(written(Trip{}, layout, dates), dates), Trip{});
    }
  }
}

TEST(StoredJson, aDateHasTheFormThatIsAskedFor) {
  EXPECT_EQ(written(moment, Layout::compact, DateForm::iso8601), "\"2026-01-31T09:05:00Z\"");
  EXPECT_EQ(written(moment), "791543100");
  EXPECT_EQ(written(moment + 125ms), "791543100.125");
  EXPECT_EQ(valueOf<Moment>("791543100.125"), moment + 125ms);
  EXPECT_EQ(failure<Moment>("791543100", DateForm::iso8601), "The record has the wrong type");
  EXPECT_EQ(failure<Moment>("\"2026-01-31T09:05:00.5Z\"", DateForm::iso8601),
            "The record has the wrong type");
  EXPECT_EQ(failure<Moment>("\"2026-01-31T09:05:00Z\""), "The record has the wrong type");
  EXPECT_EQ(failure<Moment>("1e300"), "The record has the wrong type");
}

TEST(StoredJson, anOptionalWithoutValueHasNoKey) {
  Trip trip = whole();
  trip.note.reset();
  trip.endedAt.reset();
  const std::string text = written(trip);
  EXPECT_EQ(text.find("note"), std::string::npos);
  EXPECT_EQ(text.find("null"), std::string::npos);
  EXPECT_EQ(valueOf<Trip>(text), trip);
}

TEST(StoredJson, nullIsLikeAMissingKey) {
  EXPECT_EQ(valueOf<std::optional<Item>>("null"), std::nullopt);
  EXPECT_EQ(valueOf<Grown>(R"({"id":"7","mood":null,"target":null,"pending":null})"),
            (Grown{"7", Mood::wild, "", {}}));
  EXPECT_EQ(failure<Item>(R"({"name":null,"sizeBytes":1})"), "name is missing");
}

TEST(StoredJson, aKeyThatCameLaterMayBeAbsentButNotWrong) {
  EXPECT_EQ(valueOf<Grown>(R"({"id":"7"})"), (Grown{"7", Mood::wild, "", {}}));
  EXPECT_EQ(failure<Grown>(R"({"id":"7","mood":"mild"})"), "mood has the wrong type");
  EXPECT_EQ(failure<Grown>(R"({"id":"7","target":5})"), "target has the wrong type");
  EXPECT_EQ(failure<Grown>(R"({"mood":"calm"})"), "id is missing");
}

TEST(StoredJson, keysOfNobodyArePassedOverAndOfEqualKeysTheFirstCounts) {
  EXPECT_EQ(valueOf<Item>(R"({"x":[{}],"name":"a","name":5,"sizeBytes":1,"Name":2,})"), (Item{"a", 1}));
  EXPECT_EQ(valueOf<std::vector<Item>>("[]"), std::vector<Item>{});
  const auto map = valueOf<std::map<std::string, std::int64_t>>(R"({"a":1,"a":2,"b":3})");
  EXPECT_EQ(map, (std::map<std::string, std::int64_t>{{"a", 1}, {"b", 3}}));
}

TEST(StoredJson, noTypeIsTakenForAnother) {
  for (const char* text : {"\"true\"", "1", "null", "[]"}) {
    EXPECT_EQ(failure<bool>(text), "The record has the wrong type") << text;
  }
  for (const char* text : {"\"1\"", "1.5", "true", "9223372036854775808", "null"}) {
    EXPECT_EQ(failure<std::int64_t>(text), "The record has the wrong type") << text;
  }
  for (const char* text : {"1", "true", "null", "{}"}) {
    EXPECT_EQ(failure<std::string>(text), "The record has the wrong type") << text;
    EXPECT_EQ(failure<Mood>(text), "The record has the wrong type") << text;
  }
  for (const char* text : {"\"1\"", "false", "null"}) {
    EXPECT_EQ(failure<double>(text), "The record has the wrong type") << text;
    EXPECT_EQ(failure<Item>(text), "The record has the wrong type") << text;
    EXPECT_EQ(failure<std::vector<Item>>(text), "The record has the wrong type") << text;
    EXPECT_EQ((failure<std::map<std::string, bool>>(text)), "The record has the wrong type") << text;
  }
  EXPECT_EQ(valueOf<std::int64_t>("5.0"), 5);
  EXPECT_EQ(valueOf<double>("5"), 5.0);
}

TEST(StoredJson, anErrorNamesTheFirstWrongPlace) {
  const auto failing = [](const std::string& part, const std::string& instead) {
    std::string text = written(whole());
    text.replace(text.find(part), part.size(), instead);
    return failure<Trip>(text);
  };
  EXPECT_EQ(failing(R"("sizeBytes":3)", R"("sizeBytes":"3")"), "items[1].sizeBytes has the wrong type");
  EXPECT_EQ(failing(R"("name":"h",)", ""), "items[1].name is missing");
  EXPECT_EQ(failing(R"("name":"f")", R"("name":{})"), "first.name has the wrong type");
  EXPECT_EQ(failing(R"({"name":"i","sizeBytes":4})", "{}"), "named.k.name is missing");
  EXPECT_EQ(failing("[5,6]", "[5,true]"), "counts.some[1] has the wrong type");
  EXPECT_EQ(failing(R"("words":["one",""])", R"("words":{"a":1})"), "words has the wrong type");
  EXPECT_EQ(failing("791543190", "\"later\""), "endedAt has the wrong type");
  EXPECT_EQ(failure<Trip>("{}"), "id is missing");
  EXPECT_EQ(failure<Trip>("{"), "The text is not JSON");
  EXPECT_EQ(failure<Trip>(""), "The text is not JSON");
}

TEST(StoredJson, aFailureTellsItsKind) {
  using namespace StoredJsonError;
  const auto code = [](const char* text) {
    return StoredJson::read<Item>(text, DateForm::iso8601).error().code;
  };
  EXPECT_EQ(code("x"), notJsonCode);
  EXPECT_EQ(code("{}"), missingCode);
  EXPECT_EQ(code("[]"), wrongTypeCode);
}

TEST(StoredJson, whatHasNoFormIsNotWritten) {
  const auto refusal = [](const auto& value) {
    const auto text = StoredJson::write(value, Layout::pretty, DateForm::iso8601);
    return text ? *text : text.error().description;
  };
  Trip trip = whole();
  trip.items[1].name = "a\xFF";
  EXPECT_EQ(refusal(trip), "items[1].name has no form in JSON");
  EXPECT_EQ(refusal(std::map<std::string, bool>{{"\xC3", true}}), "\xC3 has no form in JSON");
  EXPECT_EQ(refusal(std::numeric_limits<double>::infinity()), "The record has no form in JSON");
  EXPECT_EQ(refusal(std::numeric_limits<double>::quiet_NaN()), "The record has no form in JSON");
}

TEST(StoredKeys, aListThatIsNotWholeIsFoundOut) {
  EXPECT_TRUE(StoredKeys::coverAllMembers<Trip>());
  EXPECT_TRUE(StoredKeys::areDistinct<Trip>());
  EXPECT_FALSE(StoredKeys::coverAllMembers<Forgetful>()) << "`lost` has no key";
  EXPECT_FALSE(StoredKeys::areDistinct<Doubled>());
  EXPECT_TRUE(StoredKeys::nameEachMemberOnce<Trip>());
  EXPECT_FALSE(StoredKeys::nameEachMemberOnce<NamedTwice>()) << "`a` has two keys, and `b` is lost";
  EXPECT_FALSE(HasStoredKeys<Constructed>) << "how many members it has is not known";
  EXPECT_FALSE(HasStoredKeys<std::string>);
}

}  // namespace
}  // namespace quarn
