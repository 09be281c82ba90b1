#include <gtest/gtest.h>

#include "Platform/PropertyList.h"
#include "tests/platform/PropertyLists.h"

namespace quarn {
namespace {

using Texts = std::map<std::string, std::string>;

std::string written(const std::string& dictionary) {
  return lists::xml(dictionary + "\n");
}

TEST(XMLWriter, aListIsWrittenByteForByteAsAMacWritesIt) {
  EXPECT_EQ(PropertyList::xml({{"CFBundleName", "Foo"}, {"CFBundleDisplayName", "Foo Bar"}}),
            written("<dict>\n"
                    "\t<key>CFBundleDisplayName</key>\n"
                    "\t<string>Foo Bar</string>\n"
                    "\t<key>CFBundleName</key>\n"
                    "\t<string>Foo</string>\n"
                    "</dict>"));
}

TEST(XMLWriter, anEmptyDictionaryAndAnEmptyTextHaveFormsOfTheirOwn) {
  EXPECT_EQ(PropertyList::xml({}), written("<dict/>"));
  EXPECT_EQ(PropertyList::xml({{"a", ""}}), written("<dict>\n\t<key>a</key>\n\t<string></string>\n</dict>"));
}

TEST(XMLWriter, threeCharactersAreEscapedInKeysAndTextsAndNoOthers) {
  EXPECT_EQ(PropertyList::xml({{"<&>", "a < b && c > \"d\" 'e' ]]> \u00E9"}}),
            written("<dict>\n"
                    "\t<key>&lt;&amp;&gt;</key>\n"
                    "\t<string>a &lt; b &amp;&amp; c &gt; \"d\" 'e' ]]&gt; \u00E9</string>\n"
                    "</dict>"));
}

/// The keys in the order in which a list has them.
std::vector<std::string> keysInOrder(const std::vector<std::string>& keys) {
  Texts texts;
  for (const std::string& key : keys) texts[key] = "";
  const std::string list = PropertyList::xml(texts);
  std::vector<std::string> found;
  for (std::size_t at = 0; (at = list.find("<key>", at)) != std::string::npos; ++at)
    found.push_back(list.substr(at + 5, list.find("</key>", at) - at - 5));
  return found;
}

TEST(XMLWriter, keysAreSortedByTheirUTF16CodeUnits) {
  const std::vector<std::string> sorted = {"A",      "AB",         "B",          "a",      "\u00E9",
                                           "\uD7FF", "\U00010000", "\U0010FFFF", "\uE000", "\uFFFD"};
  EXPECT_EQ(keysInOrder(sorted), sorted);
}

TEST(XMLWriter, whateverIsWrittenIsReadBack) {
  std::string controls;
  for (char c = 1; c < 0x20; ++c) controls += c;
  const Texts texts = {{"controls", controls + "\x7F"},
                       {"lines", "\r\n\n\r\t  "},
                       {"markup", "<![CDATA[x]]> <!-- --> &amp; &#0; </string> <?xml?> %x;"},
                       {"composed", "\u00E9"},
                       {"decomposed", "e\u0301"},
                       {"\u00E9", "a key"},
                       {"e\u0301", "another"},
                       {"mark", "\uFEFFx"},
                       {"no characters", "\uFFFE\uFFFF\U0001FFFF"},
                       {"long", std::string(100'000, '&')},
                       {"", "no key"},
                       {"]]>", "]]>"}};
  EXPECT_EQ(PropertyList::texts(PropertyList::xml(texts)), texts);
}

}  // namespace
}  // namespace quarn
