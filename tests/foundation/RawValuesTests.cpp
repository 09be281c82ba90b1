#include "QuarnCore/foundation/RawValues.h"

namespace quarn {
namespace {

enum class Season { spring, summer, autumn2 };

struct SeasonRow {
  Season value;
  std::string_view rawValue;
  int warmth;
};

enum class Incomplete { first, second, third3 };
enum class WithHole { first, second, third };
enum class Gap { a, b, far = 9 };
enum class WideGap { a, farthest = 255 };
enum class Shuffled { first, second };
enum class Alike { first, second };
struct Holder {
  enum class Nested { only };
};
enum class Unlisted { first };

}  // namespace

template <>
inline constexpr auto rawValueRows<Season> = std::to_array<SeasonRow>({
    {Season::spring, "spring", 1},
    {Season::summer, "High Summer", 2},
    {Season::autumn2, "", 0},
});

template <>
inline constexpr auto rawValueRows<Incomplete> = std::to_array<RawValueRow<Incomplete>>({
    {Incomplete::first, "first"},
    {Incomplete::second, "second"},
});

template <>
inline constexpr auto rawValueRows<WithHole> = std::to_array<RawValueRow<WithHole>>({
    {WithHole::first, "first"},
    {WithHole::third, "third"},
});

template <>
inline constexpr auto rawValueRows<Gap> = std::to_array<RawValueRow<Gap>>({
    {Gap::a, "a"},
    {Gap::b, "b"},
});

template <>
inline constexpr auto rawValueRows<WideGap> = std::to_array<RawValueRow<WideGap>>({
    {WideGap::a, "a"},
});

template <>
inline constexpr auto rawValueRows<Shuffled> = std::to_array<RawValueRow<Shuffled>>({
    {Shuffled::second, "second"},
    {Shuffled::first, "first"},
});

template <>
inline constexpr auto rawValueRows<Alike> = std::to_array<RawValueRow<Alike>>({
    {Alike::first, "same"},
    {Alike::second, "same"},
});

template <>
inline constexpr auto rawValueRows<Holder::Nested> = std::to_array<RawValueRow<Holder::Nested>>({
    {Holder::Nested::only, "only"},
});

namespace {

TEST(RawValues, eachCaseHasItsTextAndEachTextItsCase) {
  EXPECT_EQ(rawValue(Season::spring), "spring");
  EXPECT_EQ(rawValue(Season::summer), "High Summer");
  EXPECT_EQ(fromRawValue<Season>("spring"), Season::spring);
  EXPECT_EQ(fromRawValue<Season>("High Summer"), Season::summer);
  EXPECT_EQ(fromRawValue<Season>(""), Season::autumn2);
  EXPECT_EQ(rawValue(Holder::Nested::only), "only");
}

TEST(RawValues, aTextIsTakenToTheLetter) {
  for (const char* text : {"Spring", "spring ", " spring", "sprin", "high summer", "summer"}) {
    EXPECT_EQ(fromRawValue<Season>(text), std::nullopt) << text;
  }
}

TEST(RawValues, theCasesAreListedInTheirOrder) {
  EXPECT_EQ(allCases<Season>(), (std::array{Season::spring, Season::summer, Season::autumn2}));
}

TEST(RawValues, aRowMayHaveMoreColumns) {
  EXPECT_EQ(rowOf(Season::summer).warmth, 2);
}

TEST(RawValues, anEnumerationWithoutTableHasNone) {
  EXPECT_TRUE(HasRawValues<Season>);
  EXPECT_FALSE(HasRawValues<Unlisted>);
  EXPECT_FALSE(HasRawValues<int>);
}

/// What `checkedRows` asserts where the code is compiled.
template <class Enum>
bool isWhole() {
  using namespace RawValues;
  return areInOrder<Enum>() && areDistinct<Enum>() && coverAllCases<Enum>();
}

TEST(RawValues, aTableThatIsNotWholeIsFoundOut) {
  EXPECT_TRUE(isWhole<Season>());
  EXPECT_TRUE(isWhole<Holder::Nested>());
  EXPECT_FALSE(isWhole<Incomplete>()) << "the last case has no row";
  EXPECT_FALSE(isWhole<WithHole>());
  EXPECT_FALSE(isWhole<Gap>()) << "`far` has no row, though the number after the last row is free";
  EXPECT_FALSE(isWhole<WideGap>());
  EXPECT_FALSE(isWhole<Shuffled>());
  EXPECT_FALSE(isWhole<Alike>());
}

}  // namespace
}  // namespace quarn
