#include <gtest/gtest.h>

#include "Platform/PropertyList.h"
#include "tests/platform/PropertyLists.h"

namespace quarn {
namespace {

using namespace lists;
using PropertyList::Array;
using PropertyList::Data;
using PropertyList::Date;
using PropertyList::Dictionary;
using PropertyList::Integer;
using PropertyList::UID;
using PropertyList::Value;
using Texts = std::map<std::string, std::string>;

constexpr std::size_t trailerSize = 32;

void expectRead(const std::string& root, const Value& expected) {
  EXPECT_EQ(PropertyList::parse(binary({root})), expected) << testing::PrintToString(root);
}

void expectRefused(const std::vector<std::string>& roots) {
  for (const auto& root : roots) {
    EXPECT_FALSE(PropertyList::parse(binary({root, object(0x51, "a")}))) << testing::PrintToString(root);
  }
}

/// {a: <value>, b: "x"}
std::string beside(const std::string& value) {
  return binary({object(0xD2, reference(1) + reference(2) + reference(3) + reference(4)), object(0x51, "a"),
                 object(0x51, "b"), value, object(0x51, "x")});
}

TEST(BinaryPropertyList, everyKindOfValueIsRead) {
  expectRead(object(0x00), Value{});
  expectRead(object(0x08), Value{false});
  expectRead(object(0x09), Value{true});
  expectRead(object(0x22, bigEndian(0x3FC00000, 4)), Value{1.5});
  expectRead(object(0x23, bigEndian(0x3FF8000000000000, 8)), Value{1.5});
  expectRead(object(0x33, bigEndian(0x3FF8000000000000, 8)), Value{Date{1.5}});
  expectRead(object(0x43, std::string("\0\xFF\1", 3)), Value{Data{std::string("\0\xFF\1", 3)}});
  expectRead(object(0x40), Value{Data{}});
  expectRead(object(0x52, "ab"), Value{std::string("ab")});
  expectRead(object(0x50), Value{std::string()});
  expectRead(object(0x62, bigEndian(0xD83DDE00, 4)), Value{std::string("\U0001F600")});
  expectRead(object(0x80, "\7"), Value{UID{7}});
  expectRead(object(0x87, bigEndian(0xFFFFFFFF, 8)), Value{UID{0xFFFFFFFF}});
  expectRead(object(0xA0), Value{Array{}});
  expectRead(object(0xD0), Value{Dictionary{}});
}

TEST(BinaryPropertyList, wholeNumbersOfUpToFourBytesHaveNoSign) {
  expectRead(object(0x10, "\xFF"), Value{Integer{0, 255}});
  expectRead(object(0x11, bigEndian(0xFFFE, 2)), Value{Integer{0, 0xFFFE}});
  expectRead(object(0x12, bigEndian(0xFFFFFFFE, 4)), Value{Integer{0, 0xFFFFFFFE}});
  expectRead(object(0x13, bigEndian(~std::uint64_t{0}, 8)), Value{Integer{-1, ~std::uint64_t{0}}});
  expectRead(object(0x13, bigEndian(7, 8)), Value{Integer{0, 7}});
  expectRead(object(0x14, bigEndian(1, 8) + bigEndian(2, 8)), Value{Integer{1, 2}});
}

TEST(BinaryPropertyList, containersHoldWhatTheyReferTo) {
  EXPECT_EQ(PropertyList::parse(binary({object(0xA2, reference(1) + reference(2)), object(0x51, "a"),
                                        object(0xC1, reference(3)), object(0x09)})),
            (Value{Array{{std::string("a")}, {Array{{true}}}}}));
}

TEST(BinaryPropertyList, ofAKeyThatOccursTwiceTheFirstCounts) {
  EXPECT_EQ(PropertyList::texts(
                binary({object(0xD2, reference(1) + reference(2) + reference(3) + reference(4)),
                        object(0x51, "a"), object(0x51, "a"), object(0x51, "1"), object(0x51, "2")})),
            (Texts{{"a", "1"}}));
}

TEST(BinaryPropertyList, aCountOf15OrMoreIsANumberOfItsOwn) {
  const std::string fifteen(15, 'n'), many(300, 'n');
  expectRead(object(0x5F, "\x10\x0F" + fifteen), Value{fifteen});
  expectRead(object(0x5F, "\x11" + bigEndian(300, 2) + many), Value{many});
  expectRead(object(0x5F, "\x13" + bigEndian(300, 8) + many), Value{many});
  expectRefused({object(0x5F, "\x10\xFF" + fifteen), object(0x5F, "\x20\x0F" + fifteen),
                 object(0x5F, std::string("\0\x0F", 2) + fifteen),
                 object(0x5F, "\x14" + bigEndian(0, 8) + bigEndian(15, 8) + fifteen),
                 object(0x5F, "\x13" + bigEndian(~std::uint64_t{0}, 8) + many),
                 object(0x6F, "\x13" + bigEndian(std::uint64_t{1} << 63, 8) + many),
                 object(0xDF, "\x13" + bigEndian(std::uint64_t{1} << 62, 8) + many)});
}

TEST(BinaryPropertyList, aWrongValueFailsTheWholeList) {
  EXPECT_EQ(PropertyList::texts(beside(object(0x09))), (Texts{{"b", "x"}}));
  for (const std::string& value :
       {object(0x01), object(0x0F), object(0x15, std::string(32, '\0')), object(0x20, "ab"),
        object(0x24, std::string(16, '\0')), object(0x30, "a"), object(0x32, "abcd"), object(0x51, "\xE9"),
        object(0x61, bigEndian(0xD83D, 2)), object(0x61, bigEndian(0xDE00, 2)), object(0x70),
        object(0x84, "\1\0\0\0\0"), object(0x87, bigEndian(std::uint64_t{1} << 32, 8)),
        object(0x88, std::string(9, '\0')), object(0x90), object(0xB0), object(0xE0), object(0xF0)}) {
    EXPECT_FALSE(PropertyList::parse(beside(value))) << testing::PrintToString(value);
  }
}

TEST(BinaryPropertyList, referencesStayWithinTheList) {
  expectRefused({object(0xA1, reference(2)), object(0xA1, reference(0xFFFF)), object(0xA2, reference(1)),
                 object(0xD1, reference(1) + reference(2)), object(0xD1, reference(2) + reference(1))});
}

TEST(BinaryPropertyList, aListThatRefersToItselfIsRefused) {
  expectRefused({object(0xA1, reference(0)), object(0xD1, reference(1) + reference(0)),
                 object(0xA4, reference(0) + reference(0) + reference(0) + reference(0))});
}

TEST(BinaryPropertyList, aKeyIsATextWithoutANul) {
  const std::string nul("a\0b", 3), wideNul("\0a\0\0", 4);
  for (const std::string& key : {object(0x09), object(0x10, "\1"), object(0xA0), object(0x41, "a"),
                                 object(0x53, nul), object(0x62, wideNul)}) {
    EXPECT_FALSE(
        PropertyList::parse(binary({object(0xD1, reference(1) + reference(2)), key, object(0x51, "x")})))
        << testing::PrintToString(key);
  }
}

TEST(BinaryPropertyList, aTextThatIsNoKeyMayHoldANul) {
  const std::string nul("a\0b", 3), wideNul("\0a\0\0", 4);
  expectRead(object(0x53, nul), Value{nul});
  expectRead(object(0x62, wideNul), Value{std::string("a\0", 2)});
}

TEST(BinaryPropertyList, aFewBytesThatStandForMoreThanMemoryHoldsAreRefused) {
  EXPECT_EQ(PropertyList::texts(binaryTower(8, 2)), Texts{});
  EXPECT_EQ(PropertyList::texts(binaryTower(60, 2)), std::nullopt);
  EXPECT_EQ(PropertyList::texts(binaryTower(500, 14)), std::nullopt);
}

TEST(BinaryPropertyList, aLongTextMayBeReferredToUpToABound) {
  const auto list = [](std::size_t references) {
    const std::size_t length = 1 << 20;
    std::string root = "\xAF\x11" + bigEndian(references, 2);
    for (std::size_t i = 0; i < references; ++i) root += reference(1);
    return binary({root, "\x5F\x12" + bigEndian(length, 4) + std::string(length, 'n')});
  };
  EXPECT_TRUE(PropertyList::parse(list(64)));
  EXPECT_FALSE(PropertyList::parse(list(66)));
}

TEST(BinaryPropertyList, theTrailerTellsWhereEverythingIs) {
  const std::string list = binary({object(0xA1, reference(1)), object(0x51, "a")});
  const auto trailer = list.size() - trailerSize;
  const auto changed = [&](std::size_t place, const std::string& bytes) {
    std::string result = list;
    return result.replace(trailer + place, bytes.size(), bytes);
  };
  ASSERT_TRUE(PropertyList::parse(list));
  EXPECT_EQ(PropertyList::parse(changed(16, bigEndian(1, 8))), Value{std::string("a")});
  for (const std::string& wrong :
       {changed(6, std::string(1, '\0')), changed(6, "\x09"), changed(7, std::string(1, '\0')),
        changed(7, "\x09"), changed(8, bigEndian(0, 8)), changed(8, bigEndian(1, 8)),
        changed(8, bigEndian(3, 8)), changed(8, bigEndian((std::uint64_t{1} << 62) + 2, 8)),
        changed(16, bigEndian(2, 8)), changed(16, bigEndian(~std::uint64_t{0}, 8)),
        changed(24, bigEndian(0, 8)), changed(24, bigEndian(7, 8)),
        changed(24, bigEndian(~std::uint64_t{0}, 8)), list + "x"}) {
    EXPECT_FALSE(PropertyList::parse(wrong))
        << testing::PrintToString(wrong.substr(wrong.size() - trailerSize));
  }
}

TEST(BinaryPropertyList, valuesLieBetweenTheSignatureAndTheTable) {
  for (const std::uint64_t offset :
       {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{10}, std::uint64_t{0xFFFFFFFF}}) {
    std::string list = binary({object(0x51, "a")});
    const auto table = list.size() - trailerSize - 4;
    EXPECT_TRUE(PropertyList::parse(list));
    list.replace(table, 4, bigEndian(offset, 4));
    EXPECT_FALSE(PropertyList::parse(list)) << offset;
  }
  // The text would take its second character from the table.
  EXPECT_FALSE(PropertyList::parse(binary({object(0x52, "a")})));
}

}  // namespace
}  // namespace quarn
