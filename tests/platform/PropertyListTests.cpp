#include <gtest/gtest.h>

#include "Platform/PropertyList.h"
#include "tests/platform/PropertyLists.h"

namespace quarn {
namespace {

using namespace lists;
using Texts = std::map<std::string, std::string>;

/// {a: "one", b: 1, c: ["x"], é: "ü"}
std::string binaryExample() {
  std::string root = object(0xD4);
  for (std::size_t number = 1; number <= 8; ++number) root += reference(number);
  const std::string wideE("\x61\0\xE9", 3), wideU("\x61\0\xFC", 3), one("\x10\x01", 2);
  return binary({root, object(0x51, "a"), object(0x51, "b"), object(0x51, "c"), wideE, object(0x53, "one"),
                 one, object(0xA1, reference(9)), wideU, object(0x51, "x")});
}

TEST(PropertyList, theTextsAtTheTopAreRead) {
  EXPECT_EQ(PropertyList::texts(xml("<dict>\n\t<key>CFBundleIdentifier</key>\n\t<string>com.foo</string>\n"
                                    "\t<key>CFBundleVersion</key>\n\t<string>1</string>\n</dict>\n")),
            (Texts{{"CFBundleIdentifier", "com.foo"}, {"CFBundleVersion", "1"}}));
  EXPECT_EQ(PropertyList::texts(binaryExample()), (Texts{{"a", "one"}, {"\u00E9", "\u00FC"}}));
}

TEST(PropertyList, valuesOfOtherTypesAreLeftOut) {
  EXPECT_EQ(
      PropertyList::texts(xml("<dict><key>i</key><integer>1</integer><key>r</key><real>1.5</real>"
                              "<key>t</key><true/><key>d</key><date>2020-01-01T00:00:00Z</date>"
                              "<key>x</key><data>AAAA</data><key>l</key><array><string>s</string></array>"
                              "<key>n</key><dict><key>k</key><string>s</string></dict>"
                              "<key>s</key><string>text</string></dict>")),
      (Texts{{"s", "text"}}));
}

TEST(PropertyList, anEmptyDictionaryHasNoTexts) {
  EXPECT_EQ(PropertyList::texts(xml("<dict/>")), Texts{});
  EXPECT_EQ(PropertyList::texts(xml("<dict></dict>")), Texts{});
  EXPECT_EQ(PropertyList::texts(binary({object(0xD0)})), Texts{});
}

TEST(PropertyList, whiteSpaceAloneIsAnEmptyDictionaryAndNoBytesAreNone) {
  EXPECT_EQ(PropertyList::texts(" \t\r\n"), Texts{});
  EXPECT_EQ(PropertyList::texts("\n"), Texts{});
  EXPECT_EQ(PropertyList::texts(""), std::nullopt);
}

TEST(PropertyList, aRootThatIsNoDictionaryIsAListWithoutTexts) {
  for (const auto* value : {"<string>x</string>", "<array/>", "<array><dict/></array>", "<true/>"}) {
    EXPECT_TRUE(PropertyList::parse(xml(value))) << value;
    EXPECT_EQ(PropertyList::texts(xml(value)), std::nullopt) << value;
  }
  for (const auto& root : {object(0x51, "a"), object(0xA0)}) {
    EXPECT_TRUE(PropertyList::parse(binary({root}))) << root;
    EXPECT_EQ(PropertyList::texts(binary({root})), std::nullopt) << root;
  }
}

TEST(PropertyList, whatIsNoPropertyListGivesNothing) {
  for (const std::string& bytes :
       {std::string("garbage"), std::string("word"), std::string("{ a = b; }"), std::string("\"a\" = \"b\";"),
        std::string("bplist00"), "bplist00" + std::string(200, '\xFF'), "bplist00" + xml("<dict/>"),
        "bplist01" + binaryExample().substr(8), std::string(10, '\0'), head, head + tail,
        std::string("\xFF\xFE\xFD")}) {
    EXPECT_EQ(PropertyList::texts(bytes), std::nullopt) << bytes;
  }
}

TEST(PropertyList, containersMayBe512DeepAndNoDeeper) {
  EXPECT_EQ(PropertyList::texts(xmlTower(511)), Texts{});
  EXPECT_EQ(PropertyList::texts(binaryTower(511, 1)), Texts{});
  for (const std::size_t height : {std::size_t{512}, std::size_t{60'000}}) {
    EXPECT_EQ(PropertyList::texts(xmlTower(height)), std::nullopt) << height;
    EXPECT_EQ(PropertyList::texts(binaryTower(height, 1)), std::nullopt) << height;
  }
  EXPECT_EQ(PropertyList::texts(xmlTower(1'000'000)), std::nullopt);
}

TEST(PropertyList, containersBesideEachOtherAreNotDeep) {
  const std::size_t count = 600;
  std::string elements, references;
  for (std::size_t i = 0; i < count; ++i) elements += "<array><dict></dict></array>";
  for (std::size_t i = 0; i < count; ++i) references += reference(1);
  EXPECT_TRUE(PropertyList::parse(xml("<array>" + elements + "</array>")));
  const std::string root = object(0xAF, "\x11" + bigEndian(count, 2) + references);
  EXPECT_TRUE(PropertyList::parse(binary({root, object(0xA1, reference(2)), object(0xD0)})));
}

TEST(PropertyList, everyTruncationGivesNothing) {
  const std::string document = xml("<dict><key>a</key><string>x&amp;</string></dict>");
  const auto end = document.rfind('>');
  for (std::size_t length = 0; length <= end; ++length) {
    EXPECT_EQ(PropertyList::texts(std::string_view(document).substr(0, length)), std::nullopt) << length;
  }
  const auto list = binaryExample();
  for (std::size_t length = 0; length < list.size(); ++length) {
    EXPECT_EQ(PropertyList::texts(std::string_view(list).substr(0, length)), std::nullopt) << length;
  }
}

TEST(PropertyList, everyDamagedListIsReadToAnEnd) {
  std::size_t refused = 0;
  for (const auto& document :
       {xml("<dict><key>a</key><string>x&amp;</string><key>b</key><array/></dict>"), binaryExample()}) {
    for (std::size_t i = 0; i < document.size(); ++i) {
      for (int flip = 1; flip < 256; ++flip) {
        auto damaged = document;
        damaged[i] = static_cast<char>(damaged[i] ^ flip);
        if (!PropertyList::texts(damaged)) ++refused;
      }
    }
  }
  EXPECT_GT(refused, 0u);
}

}  // namespace
}  // namespace quarn
