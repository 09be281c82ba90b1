#include <array>
#include <gtest/gtest.h>

#include "Platform/PropertyList.h"

namespace quarn {

namespace {

using Texts = std::map<std::string, std::string>;

const std::string head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
const std::string tail = "</plist>\n";

std::string xml(const std::string& value) {
  return head + value + tail;
}

std::string bigEndian(std::uint64_t number, int width) {
  std::string bytes;
  for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
  return bytes;
}

/// A reference to an object of a binary list, as `binary` writes them.
std::string reference(std::size_t object) {
  return bigEndian(object, 2);
}

/// A binary list of the objects, the first of which is the root.
std::string binary(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const auto& object : objects) {
    table += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  const auto tableStart = bytes.size();
  return bytes + table + std::string(6, '\0') + "\4\2" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
         bigEndian(tableStart, 8);
}

/// {a: "one", b: 1, c: ["x"], é: "ü"}
std::string binaryExample() {
  std::string root = "\xD4";
  for (std::size_t object = 1; object <= 8; ++object) root += reference(object);
  const std::string wideE("\x61\0\xE9", 3), wideU("\x61\0\xFC", 3), one("\x10\x01", 2);
  return binary({root,
                 "\x51"
                 "a",
                 "\x51"
                 "b",
                 "\x51"
                 "c",
                 wideE,
                 "\x53"
                 "one",
                 one, "\xA1" + reference(9), wideU, "\x51x"});
}

/// A dictionary that holds arrays within each other, each of them referring `fan` times to the next.
std::string binaryTower(std::size_t height, std::size_t fan) {
  std::vector<std::string> objects{"\xD1" + reference(1) + reference(2),
                                   "\x51"
                                   "a"};
  for (std::size_t level = 0; level < height; ++level) {
    std::string array(1, static_cast<char>(0xA0 | fan));
    for (std::size_t i = 0; i < fan; ++i) array += reference(objects.size() + 1);
    objects.push_back(array);
  }
  objects.push_back("\x51x");
  return binary(objects);
}

std::string xmlTower(std::size_t height) {
  std::string value = "<dict><key>a</key>";
  for (std::size_t i = 0; i < height; ++i) value += "<array>";
  for (std::size_t i = 0; i < height; ++i) value += "</array>";
  return xml(value + "</dict>");
}

}  // namespace

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

TEST(PropertyList, textsAreReadAsTheyAreMeant) {
  EXPECT_EQ(
      PropertyList::texts(xml("<!-- c --><dict><key>a</key><string>&amp;&lt;&#65;&#x42;&quot;</string>"
                              "<key>b</key><string><![CDATA[x<y]]></string><key>c</key><string></string>"
                              "<key>d</key><string/><key>e</key><string> x </string>"
                              "<key>\u00E9</key><string>\U0001F600</string></dict>")),
      (Texts{{"a", "&<AB\""}, {"b", "x<y"}, {"c", ""}, {"d", ""}, {"e", " x "}, {"\u00E9", "\U0001F600"}}));
}

TEST(PropertyList, anEmptyDictionaryHasNoTexts) {
  EXPECT_EQ(PropertyList::texts(xml("<dict/>")), Texts{});
  EXPECT_EQ(PropertyList::texts(xml("<dict></dict>")), Texts{});
  EXPECT_EQ(PropertyList::texts(binary({"\xD0"})), Texts{});
}

TEST(PropertyList, whiteSpaceAloneIsAnEmptyDictionaryAndNoBytesAreNone) {
  EXPECT_EQ(PropertyList::texts(" \t\r\n"), Texts{});
  EXPECT_EQ(PropertyList::texts("\n"), Texts{});
  EXPECT_EQ(PropertyList::texts(""), std::nullopt);
}

TEST(PropertyList, aByteOrderMarkIsAccepted) {
  EXPECT_EQ(PropertyList::texts("\uFEFF" + xml("<dict><key>a</key><string>1</string></dict>")),
            (Texts{{"a", "1"}}));
}

TEST(PropertyList, aRootThatIsNoDictionaryGivesNothing) {
  for (const auto* value : {"<string>x</string>", "<array/>", "<array><dict/></array>", "<true/>"}) {
    EXPECT_EQ(PropertyList::texts(xml(value)), std::nullopt) << value;
  }
  EXPECT_EQ(PropertyList::texts(binary({"\x51"
                                        "a"})),
            std::nullopt);
  EXPECT_EQ(PropertyList::texts(binary({"\xA0"})), std::nullopt);
}

TEST(PropertyList, whatIsNoPropertyListGivesNothing) {
  const std::string dict = "<dict><key>a</key><string>1</string></dict>";
  const std::string rows[] = {
      "garbage",
      "{ a = b; }",
      "\"a\" = \"b\";",
      "bplist00",
      "bplist00" + std::string(200, '\xFF'),
      std::string(10, '\0'),
      head,
      head + tail,
      head + dict,
      head + "<dict><key>a</key><string>1</string>",
      xml("<dict><key>a</key><string>1</string>"),
      xml(dict + dict),
      xml(dict) + "<plist>" + dict + tail,
      xml(dict) + "garbage",
      xml(dict) + "<x/>",
      xml(dict) + "<",
      xml(dict + "</dict>"),
      xml("garbage" + dict),
      xml(dict + "garbage"),
      "garbage" + xml(dict),
      xml("<dict><key>a</key></dict>"),
      xml("<dict><string>a</string></dict>"),
      xml("<dict><key>a</key><key>b</key><string>x</string></dict>"),
      xml("<dict><key>a</key><foo>x</foo></dict>"),
      xml("<dict>text<key>a</key><string>x</string></dict>"),
      xml("<dict><key>a</key><string>&foo;</string></dict>"),
      xml("<dict><key>a</key><string>x & y</string></dict>"),
      xml("<dict><key>a</key><string>x</array></dict>"),
      xml("<dict><key>a</key><array><string>x</string></dict></array>"),
      xml("<dict><key>a</key><string>\xFF</string></dict>"),
      xml("<DICT></DICT>"),
      xml("<!-- <dict/>"),
  };
  for (const auto& row : rows) EXPECT_EQ(PropertyList::texts(row), std::nullopt) << row;
}

TEST(PropertyList, nestingThatNoListNeedsGivesNothing) {
  EXPECT_EQ(PropertyList::texts(xmlTower(400)), Texts{});
  EXPECT_EQ(PropertyList::texts(binaryTower(400, 1)), Texts{});
  EXPECT_EQ(PropertyList::texts(xmlTower(1'000'000)), std::nullopt);
  EXPECT_EQ(PropertyList::texts(binaryTower(60'000, 1)), std::nullopt);
}

TEST(PropertyList, aListThatRefersToItselfGivesNothing) {
  EXPECT_EQ(PropertyList::texts(binary({"\xD1" + reference(1) + reference(0),
                                        "\x51"
                                        "a"})),
            std::nullopt);
}

TEST(PropertyList, aNulInAKeyGivesNothing) {
  const std::string withNul(
      "\x53"
      "a\0b",
      4);
  const std::string wideWithNul("\x62\0a\0\0", 5);
  const auto root = "\xD1" + reference(1) + reference(2);
  EXPECT_EQ(PropertyList::texts(binary({root, withNul, "\x51x"})), std::nullopt);
  EXPECT_EQ(PropertyList::texts(binary({root, wideWithNul, "\x51x"})), std::nullopt);
  EXPECT_EQ(
      PropertyList::texts(xml("<dict><key>a" + std::string(1, '\0') + "b</key><string>x</string></dict>")),
      std::nullopt);
}

TEST(PropertyList, aFewBytesThatStandForMoreThanMemoryHoldsGiveNothing) {
  EXPECT_EQ(PropertyList::texts(binaryTower(8, 2)), Texts{});
  EXPECT_EQ(PropertyList::texts(binaryTower(60, 2)), std::nullopt);
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

}  // namespace quarn
