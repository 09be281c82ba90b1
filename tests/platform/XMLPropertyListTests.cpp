#include <cmath>
#include <gtest/gtest.h>
#include <limits>

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

std::string text(const std::string& content) {
  return xml("<dict><key>a</key><string>" + content + "</string></dict>");
}

/// What a list holds at "a", or nothing if the list is refused. A text stands beside it.
std::optional<Value> read(const std::string& value) {
  const auto root =
      PropertyList::parse(xml("<dict><key>a</key>" + value + "<key>b</key><string>x</string></dict>"));
  if (!root) return std::nullopt;
  const auto& members = *root->as<Dictionary>();
  EXPECT_EQ(members.at("b"), Value{std::string("x")});
  return members.at("a");
}

void expectRefused(const std::vector<std::string>& documents) {
  for (const auto& document : documents) EXPECT_EQ(PropertyList::texts(document), std::nullopt) << document;
}

void expectValuesRefused(const std::vector<std::string>& values) {
  for (const auto& value : values) EXPECT_FALSE(read(value)) << value;
}

TEST(XMLPropertyList, everyKindOfValueIsRead) {
  EXPECT_EQ(
      PropertyList::parse(xml("<dict><key>d</key><dict><key>k</key><string>v</string></dict>"
                              "<key>l</key><array><true/><false/></array><key>i</key><integer>7</integer>"
                              "<key>r</key><real>1.5</real><key>t</key><date>2001-01-02T00:00:01Z</date>"
                              "<key>x</key><data>AAEC</data></dict>")),
      (Value{Dictionary{{"d", {Dictionary{{"k", {std::string("v")}}}}},
                        {"l", {Array{{true}, {false}}}},
                        {"i", {Integer{0, 7}}},
                        {"r", {1.5}},
                        {"t", {Date{86401}}},
                        {"x", {Data{std::string("\0\1\2", 3)}}}}}));
}

TEST(XMLPropertyList, aListOfDictionariesIsRead) {
  const auto root = PropertyList::parse(
      xml("<dict><key>system-entities</key><array>"
          "<dict><key>dev-entry</key><string>/dev/disk3</string></dict>"
          "<dict><key>mount-point</key><string>/Volumes/Foo</string><key>potentially-mountable</key><true/>"
          "</dict></array></dict>"));
  ASSERT_TRUE(root);
  const auto* entities = root->as<Dictionary>()->at("system-entities").as<Array>();
  ASSERT_TRUE(entities);
  EXPECT_EQ(*entities, (Array{{Dictionary{{"dev-entry", {std::string("/dev/disk3")}}}},
                              {Dictionary{{"mount-point", {std::string("/Volumes/Foo")}},
                                          {"potentially-mountable", {true}}}}}));
  EXPECT_EQ(root->as<std::string>(), nullptr);
}

TEST(XMLPropertyList, ofAKeyThatOccursTwiceTheLastCounts) {
  EXPECT_EQ(
      PropertyList::texts(xml("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>")),
      (Texts{{"a", "2"}}));
  EXPECT_EQ(PropertyList::texts(xml("<dict><key>a</key><string>1</string><key>a</key><true/></dict>")),
            Texts{});
}

TEST(XMLPropertyList, whatFollowsTheFirstValueIsIgnored) {
  const std::string dict = "<dict><key>a</key><string>1</string></dict>";
  for (const std::string& rest :
       {std::string("garbage"), std::string("<x/>"), std::string("<"), "<plist>" + dict + tail, dict,
        std::string("\xFF"), std::string("&foo;"), std::string(1, '\0')}) {
    EXPECT_EQ(PropertyList::texts(xml(dict) + rest), (Texts{{"a", "1"}})) << rest;
    EXPECT_EQ(PropertyList::texts(dict + rest), (Texts{{"a", "1"}})) << rest;
  }
}

TEST(XMLPropertyList, theElementAroundTheValueMayBeMissing) {
  EXPECT_EQ(PropertyList::texts("<dict><key>a</key><string>1</string></dict>"), (Texts{{"a", "1"}}));
  EXPECT_EQ(PropertyList::texts(" <?x y?><!-- c --><!DOCTYPE plist><dict/>"), Texts{});
}

TEST(XMLPropertyList, theElementAroundTheValueHoldsExactlyOne) {
  expectRefused({"<plist/>", "<plist/><dict/></plist>", "<plist></plist>", "<plist> <!-- c --> </plist>",
                 xml("<dict/><dict/>"), xml("<dict/><string>x</string>"), xml("<dict/>x"), xml("x<dict/>"),
                 xml("<plist><dict/></plist>"), "<plist><dict/>", "<plist><dict/></PLIST>"});
}

TEST(XMLPropertyList, beforeTheFirstElementOnlyRemarksStand) {
  EXPECT_EQ(PropertyList::texts(" \t\r\n<!-- < > --> <?a <dict> ?>\n"
                                "<!DOCTYPE plist SYSTEM \"a>b\" [ <!-- ]> --> <!ELEMENT a (b)> %c; <?d ]>?>\n"
                                "<!ENTITY e \"]>\"> ] >"
                                "<plist attribute='1>0'><dict/></plist>"),
            Texts{});
  expectRefused({"x<dict/>", "&amp;<dict/>", "\v<dict/>", "\u00A0<dict/>", "<![CDATA[ ]]><dict/>",
                 "<!ELEMENT a><dict/>", "<!DOCTYPE plist [ x ]><dict/>", "<!DOCTYPE plist [ <dict/> ]>",
                 "<!-- <dict/>", "<?<dict/>", "<!DOCTYPE plist <dict/"});
}

TEST(XMLPropertyList, betweenElementsOnlyWhiteSpaceAndRemarksStand) {
  EXPECT_EQ(PropertyList::texts(xml("<dict> \t\r\n<key>a</key><!-- > --><string>1</string><?x > ?></dict>")),
            (Texts{{"a", "1"}}));
  expectRefused({xml("<dict>x</dict>"), xml("<dict>\v</dict>"), xml("<dict>\f</dict>"),
                 xml("<dict>\u00A0</dict>"), xml("<dict>&amp;</dict>"), xml("<dict><![CDATA[]]></dict>"),
                 xml("<dict><!DOCTYPE plist></dict>"), xml("<array>,<true/></array>"),
                 xml("<dict><key>a</key>x<string>1</string></dict>")});
}

TEST(XMLPropertyList, namesOfElementsAreCaseSensitive) {
  expectRefused({xml("<DICT></DICT>"), xml("<Dict/>"), "<PLIST><dict/></PLIST>",
                 xml("<dict><Key>a</Key><string>1</string></dict>"),
                 xml("<dict><key>a</key><String>1</String></dict>"), xml("<dict></DICT>")});
}

TEST(XMLPropertyList, anUnknownElementFailsTheWholeListWhereverItStands) {
  expectValuesRefused({"<foo>x</foo>", "<foo/>", "<array><foo/></array>",
                       "<array><array><null/></array></array>", "<dict><key>a</key><foo/></dict>", "<set/>",
                       "<int>1</int>", "<>x</>", "< string>x</string>", "<key>x</key>",
                       "<array><key>x</key></array>", "<string><foo/></string>",
                       "<string><string>x</string></string>"});
  expectRefused({xml("<foo/>"), "<foo><dict/></foo>"});
}

TEST(XMLPropertyList, attributesAreIgnored) {
  EXPECT_EQ(read("<string a=\"x\" b='>' c=\"/>\">1</string >"), Value{std::string("1")});
  EXPECT_EQ(read("<true  a = \"/\" />"), Value{true});
}

TEST(XMLPropertyList, elementsCloseEachOther) {
  expectValuesRefused({"<string>x</array>", "<array><string>x</array></string>", "<string>x",
                       "<string>x</string", "<array>", "<array/></array>", "<string>x</ string>",
                       "<string>x</stringx>", "<true></false>", "<string a=\">x</string>"});
  expectRefused({xml("</dict>"), xml("<dict></<key>a</key><string>1</string></dict>"),
                 xml("<dict></dict></dict>"), xml("<dict>")});
}

TEST(XMLPropertyList, everyKeyHasAValueAndEveryValueAKey) {
  expectRefused({xml("<dict><key>a</key></dict>"), xml("<dict><string>a</string></dict>"),
                 xml("<dict><key>a</key><key>b</key></dict>"), xml("<dict><true/></dict>"),
                 xml("<dict><key>a</key><key>b</key><string>x</string></dict>"),
                 xml("<dict><key>a</key><string>1</string><string>2</string></dict>")});
  EXPECT_EQ(PropertyList::texts(xml("<dict><key/><string>1</string><key>b</key><string/></dict>")),
            (Texts{{"", "1"}, {"b", ""}}));
}

TEST(XMLPropertyList, textsAreTakenAsTheyStand) {
  for (const std::string content :
       {"", " x ", "\r\n", "a\r\nb\rc\nd", "\t", "\u00E9\U0001F600", "a>b\"'", "]]>"}) {
    EXPECT_EQ(PropertyList::texts(text(content)), (Texts{{"a", content}})) << content;
  }
}

TEST(XMLPropertyList, entitiesAndSectionsAreReplaced) {
  for (const auto& [content, expected] :
       std::vector<std::pair<std::string, std::string>>{{"&amp;&lt;&gt;&quot;&apos;", "&<>\"'"},
                                                        {"&#65;&#x42;&#x1F600;&#0067;", "AB\U0001F600C"},
                                                        {"&amp;amp;", "&amp;"},
                                                        {"<![CDATA[x<y&amp;]]>", "x<y&amp;"},
                                                        {"a<![CDATA[]]>b<![CDATA[ ] ]> ]]]>", "ab ] ]> ]"}}) {
    EXPECT_EQ(PropertyList::texts(text(content)), (Texts{{"a", expected}})) << content;
  }
  EXPECT_EQ(PropertyList::texts(xml("<dict><key>a&amp;<![CDATA[<]]></key><string>x</string></dict>")),
            (Texts{{"a&<", "x"}}));
}

TEST(XMLPropertyList, anUnknownEntityFailsTheWholeList) {
  std::vector<std::string> documents;
  for (const std::string content :
       {"&foo;",    "&AMP;",      "x & y",          "&",       "&;",          "&#;",        "&#x;",
        "&#X41;",   "&#65x;",     "&#6 5;",         "&#x41g;", "&#x4010041;", "&#-1;",      "&#0;",
        "&#xD800;", "&#x110000;", "&#99999999999;", "&amp",    "&nbsp;",      "<![CDATA[x", "<!-- c -->"}) {
    documents.push_back(text(content));
    documents.push_back(xml("<array><string>" + std::string(content) + "</string></array>"));
    documents.push_back(xml("<dict><key>" + std::string(content) + "</key><true/></dict>"));
  }
  documents.push_back("<!DOCTYPE plist [<!ENTITY foo \"x\">]>" + text("&foo;").substr(head.size()));
  for (const auto& document : documents) EXPECT_FALSE(PropertyList::parse(document)) << document;
}

TEST(XMLPropertyList, textThatIsNoUTF8OrHoldsANulFails) {
  const std::string nul(1, '\0');
  expectRefused({text("\xFF"), text("\xC3"), text("\xED\xA0\x80"), text("<![CDATA[\xFF]]>"), text("a" + nul),
                 xml("<dict><key>\xFF</key><string>x</string></dict>"),
                 xml("<dict><key>a" + nul + "b</key><string>x</string></dict>")});
}

TEST(XMLPropertyList, wholeNumbers) {
  const std::int64_t least = std::numeric_limits<std::int64_t>::min();
  for (const auto& [content, expected] : std::vector<std::pair<std::string, Integer>>{
           {"0", {0, 0}},
           {"-0", {0, 0}},
           {"42", {0, 42}},
           {"+42", {0, 42}},
           {"-1", {-1, ~std::uint64_t{0}}},
           {" \t\r\n7", {0, 7}},
           {"007", {0, 7}},
           {"0x1F", {0, 31}},
           {"0Xff", {0, 255}},
           {"-0x10", {-1, static_cast<std::uint64_t>(-16)}},
           {"18446744073709551615", {0, ~std::uint64_t{0}}},
           {"-9223372036854775808", {-1, static_cast<std::uint64_t>(least)}}}) {
    EXPECT_EQ(read("<integer>" + content + "</integer>"), Value{expected}) << content;
  }
}

TEST(XMLPropertyList, aWrongWholeNumberFailsTheWholeList) {
  expectValuesRefused({"<integer/>", "<integer></integer>", "<integer> </integer>", "<integer>7 </integer>",
                       "<integer>7\n</integer>", "<integer>x</integer>", "<integer>1x</integer>",
                       "<integer>1.0</integer>", "<integer>0x</integer>", "<integer>--1</integer>",
                       "<integer>- 1</integer>", "<integer>+</integer>", "<integer>1,000</integer>",
                       "<integer>18446744073709551616</integer>", "<integer>-9223372036854775809</integer>",
                       "<integer>\v1</integer>", "<integer>1<!-- c --></integer>",
                       "<integer>&#49;</integer>"});
}

TEST(XMLPropertyList, realNumbers) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const auto& [content, expected] :
       std::vector<std::pair<std::string, double>>{{"0", 0},
                                                   {"-1.5", -1.5},
                                                   {"+.25", 0.25},
                                                   {"2.", 2},
                                                   {"1e3", 1000},
                                                   {"1E-2", 0.01},
                                                   {" 1", 1},
                                                   {"inf", infinity},
                                                   {"-inf", -infinity},
                                                   {"+Infinity", infinity},
                                                   {"-INFINITY", -infinity}}) {
    EXPECT_EQ(read("<real>" + content + "</real>"), Value{expected}) << content;
  }
  for (const std::string content : {"nan", "NaN", "-nan", "+nan"}) {
    const auto found = read("<real>" + content + "</real>");
    ASSERT_TRUE(found && found->as<double>()) << content;
    EXPECT_TRUE(std::isnan(*found->as<double>())) << content;
  }
}

TEST(XMLPropertyList, aWrongRealNumberFailsTheWholeList) {
  expectValuesRefused({"<real/>", "<real></real>", "<real> </real>", "<real>x</real>", "<real>1x</real>",
                       "<real>1 </real>", "<real>.</real>", "<real>e1</real>", "<real>1e</real>",
                       "<real>--1</real>", "<real>+-1</real>", "<real>-+1</real>", "<real>0x10</real>",
                       "<real>1.2.3</real>", "<real>1,5</real>", "<real>nan(1)</real>",
                       "<real>infinit</real>", "<real>- 1</real>"});
}

TEST(XMLPropertyList, dates) {
  for (const auto& [content, seconds] :
       std::vector<std::pair<std::string, double>>{{"2001-01-01T00:00:00Z", 0},
                                                   {"2026-11-21T23:16:15Z", 816995775},
                                                   {"1970-01-01T00:00:00Z", -978307200},
                                                   {"2001-02-30T00:00:00Z", 60 * 86400},
                                                   {"2000-13-01T00:00:00Z", 0},
                                                   {"2001-01-00T00:00:00Z", -86400},
                                                   {"2001-01-01T25:61:61Z", 25 * 3600 + 61 * 60 + 61}}) {
    EXPECT_EQ(read("<date>" + content + "</date>"), Value{Date{seconds}}) << content;
  }
}

TEST(XMLPropertyList, aWrongDateFailsTheWholeList) {
  expectValuesRefused({"<date/>", "<date></date>", "<date>x</date>", "<date>2020-01-01</date>",
                       "<date>2020-01-01T00:00:00</date>", "<date>2020-01-01 00:00:00Z</date>",
                       "<date>2020-01-01T00:00:00.5Z</date>", "<date>2020-01-01T00:00:00+00:00</date>",
                       "<date> 2020-01-01T00:00:00Z</date>", "<date>2020-01-01T00:00:00Z </date>",
                       "<date>2020-1-1T00:00:00Z</date>", "<date>2020-01-01t00:00:00z</date>",
                       "<date>20200-01-01T00:00:00Z</date>"});
}

TEST(XMLPropertyList, data) {
  for (const auto& [content, expected] :
       std::vector<std::pair<std::string, std::string>>{{"", ""},
                                                        {" \n", ""},
                                                        {"QUJD", "ABC"},
                                                        {"QUI=", "AB"},
                                                        {"QQ==", "A"},
                                                        {"\n\t\tQU\n\t\tJD\n\t", "ABC"},
                                                        {"Q-U*J.D", "ABC"},
                                                        {"/+A=", "\xFF\xE0"},
                                                        {"QQ==QUJD", "AABC"}}) {
    EXPECT_EQ(read("<data>" + content + "</data>"), Value{Data{expected}}) << content;
  }
}

TEST(XMLPropertyList, wrongDataFailTheWholeList) {
  expectValuesRefused({"<data/>", "<data>QU\u00E9JD</data>", "<data>\xFF</data>", "<data/></data>",
                       "<data>QUJD", "<data><x/></data>"});
}

TEST(XMLPropertyList, truthIsWrittenInTwoWays) {
  EXPECT_EQ(read("<true></true>"), Value{true});
  EXPECT_EQ(read("<false></false>"), Value{false});
  expectValuesRefused({"<true>x</true>", "<true>", "<true>1</true>"});
}

TEST(XMLPropertyList, aDictionaryOfOneNumberOfThatKeyIsAUID) {
  EXPECT_EQ(read("<dict><key>CF$UID</key><integer>7</integer></dict>"), Value{UID{7}});
  EXPECT_EQ(read("<dict><key>CF$UID</key><real>7.5</real></dict>"), Value{UID{7}});
  EXPECT_EQ(read("<dict><key>CF$UID</key><real>-1</real></dict>"), Value{UID{0}});
  EXPECT_EQ(read("<dict><key>CF$UID</key><real>1e99</real></dict>"), Value{UID{0}});
  EXPECT_EQ(PropertyList::texts(xml("<dict><key>CF$UID</key><integer>7</integer></dict>")), std::nullopt);
  EXPECT_EQ(PropertyList::texts(xml("<dict><key>CF$UID</key><string>7</string></dict>")),
            (Texts{{"CF$UID", "7"}}));
  EXPECT_EQ(PropertyList::texts(xml("<dict><key>CF$UID</key><integer>7</integer><key>a</key><true/></dict>")),
            Texts{});
}

/// In units of 2 or 4 bytes; for characters of one unit.
std::string wide(const std::u32string& text, int width, bool isLittleEndian) {
  std::string bytes;
  for (const char32_t character : text) {
    std::string unit = bigEndian(character, width);
    if (isLittleEndian) unit.assign(unit.rbegin(), unit.rend());
    bytes += unit;
  }
  return bytes;
}

TEST(XMLPropertyList, aByteOrderMarkDecides) {
  const Texts expected{{"a", "\u00E9"}};
  EXPECT_EQ(PropertyList::texts("\uFEFF" + text("\u00E9")), expected);
  const std::u32string document =
      U"\uFEFF<?xml version='1.0' encoding='ISO-8859-1'?><dict><key>a</key><string>\u00E9</string></dict>";
  for (const int width : {2, 4}) {
    for (const bool isLittleEndian : {false, true}) {
      EXPECT_EQ(PropertyList::texts(wide(document, width, isLittleEndian)), expected)
          << width << isLittleEndian;
    }
  }
  EXPECT_EQ(PropertyList::texts("\uFEFF<?xml encoding='nonsense'?><dict/>"), Texts{});
}

TEST(XMLPropertyList, charactersOfTwoUnitsAreReadAndHalvesRefused) {
  const auto document = [](const std::u32string& content) {
    return wide(U"\uFEFF<dict><key>a</key><string>" + content + U"</string></dict>", 2, true);
  };
  const auto half = [](std::uint32_t unit) { return std::u32string(1, static_cast<char32_t>(unit)); };
  EXPECT_EQ(PropertyList::texts(document(half(0xD83D) + half(0xDE00))), (Texts{{"a", "\U0001F600"}}));
  expectRefused({document(half(0xD83D)), document(half(0xDE00)), document(half(0xD83D) + half(0xD83D)),
                 document(half(0xD83D) + half(0xFFFD)), document(U"x") + "x"});
}

TEST(XMLPropertyList, withoutAMarkTheDeclarationDecides) {
  const auto document = [](const std::string& declaration, const std::string& content) {
    return "<?xml version=\"1.0\" " + declaration + "?><dict><key>a</key><string>" + content +
           "</string></dict>";
  };
  const Texts expected{{"a", "\u00E9"}};
  for (const std::string name : {"UTF-8", "utf-8", "utf8"}) {
    EXPECT_EQ(PropertyList::texts(document("encoding=\"" + name + "\"", "\u00E9")), expected) << name;
  }
  EXPECT_EQ(PropertyList::texts(document("", "\u00E9")), expected);
  EXPECT_EQ(PropertyList::texts("<!-- encoding='nonsense' --><dict/>"), Texts{});
  EXPECT_EQ(PropertyList::texts(document("encoding='iso-8859-1'", "\xE9")), expected);
  EXPECT_EQ(PropertyList::texts(document("encoding='US-ASCII'", "e")), (Texts{{"a", "e"}}));
  expectRefused({document("encoding='US-ASCII'", "\xE9"), document("encoding='nonsense'", "e"),
                 document("encoding=UTF-8", "e"), document("encoding=''", "e"),
                 document("encoding='UTF-16'", "e"), document("encoding='UTF-8", "e"),
                 wide(U"<dict/>", 2, false), wide(U"<dict/>", 2, true)});
}

}  // namespace
}  // namespace quarn
