#include "TOMLDecoder/TOMLArray.h"
#include "TOMLDecoder/internal/LineNumbers.h"
#include "TOMLDecoder/internal/UTF8.h"
#include "tests/toml/Documents.h"

using namespace std::string_literals;

namespace {

/// Something of everything the grammar has.
const std::string everything =
    "\xEF\xBB\xBF# comment \xC3\xA9\r\n"
    "title = \"a \\u00e9 \\U0001F600 \\\"x\\\"\"\n"
    "'lit eral' = 'c:\\d'\n"
    "\"q\\u0041\".b = 1_000\n"
    "multi = \"\"\"\n one \\\n  two \"\" \xF0\x9F\x98\x80\"\"\"\"\"\n"
    "raw = '''\r\n a ' b'''''\n"
    "n = [0x1F, 0b1, 0o7, +1_2, 1e5, -1.5E-3, inf, -nan, true, false]\n"
    "d = [1979-05-27T07:32:00.5Z, 1979-05-27 07:32:00, 1979-05-27, 07:32:00]\n"
    "inline = { a.b = [ { c = 1 }, [[]] ], d = {} }\n"
    "[t.\"u v\".w] # header\n"
    "x.y.z = 1\n"
    "[[list]]\n"
    "[list.sub]\n"
    "k = 1\n"
    "[[list]]\n"
    "[[list.more]]\n";

/// Reads it, whatever it is: an answer or a TOMLError with a line of the document.
void survive(const std::string& document) {
  try {
    taggedJson(toml::TOMLTable(document));
  } catch (const toml::TOMLError& error) {
    const auto lines = static_cast<std::size_t>(std::count(document.begin(), document.end(), '\n')) + 1;
    EXPECT_GE(error.reason.lineNumber, 1u) << error.text();
    EXPECT_LE(error.reason.lineNumber, lines) << error.text();
  }
}

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

constexpr std::size_t deep = 100'000;

}  // namespace

TEST(HostileInput, aDocumentCutAtAnyByteIsReadOrRefused) {
  for (std::size_t length = 0; length <= everything.size(); ++length) survive(everything.substr(0, length));
}

TEST(HostileInput, anyByteInAnyPlaceIsReadOrRefused) {
  for (std::size_t place = 0; place < everything.size(); ++place) {
    for (const char byte : "\0\x01\t\n\r \"'#.,=[]{}\\-+_0aeE\x7F\x80\xC3\xE2\xF4\xFF"s) {
      std::string replaced = everything;
      replaced[place] = byte;
      survive(replaced);
      survive(std::string(everything).insert(place, 1, byte));
    }
  }
}

TEST(HostileInput, bytesThatAreNoUTF8AreRefusedInEveryPlace) {
  for (const char* const bytes :
       {"\x80", "\xC3", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\x80", "\xE2\x82", "\xED\xA0\x80",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    for (std::size_t place = 0; place <= everything.size(); ++place) {
      // Inside of a character, what is inserted isn't the only thing that is wrong.
      const std::string document = std::string(everything).insert(place, bytes);
      const std::string error = documents::parseErrorOf(document);
      EXPECT_NE(error.find(") The given data was not valid UTF8."), std::string::npos) << place;
    }
  }
}

TEST(HostileInput, aZeroByteIsRefusedOutsideOfEverythingAndInStrings) {
  for (std::size_t place = 0; place <= everything.size(); ++place) {
    EXPECT_NE(documents::readErrorOf(std::string(everything).insert(place, 1, '\0')), "no error") << place;
  }
}

TEST(HostileInput, newlinesMayAllBeOfTwoCharacters) {
  std::string twofold;
  for (const char byte : everything) {
    if (byte == '\r') continue;
    twofold += byte == '\n' ? "\r\n"s : std::string(1, byte);
  }
  EXPECT_EQ(documents::readErrorOf(twofold), "no error");
}

TEST(HostileInput, deepNestingTakesNoStack) {
  EXPECT_EQ(documents::readErrorOf("a = " + std::string(deep, '[') + std::string(deep, ']')), "no error");
  EXPECT_EQ(documents::readErrorOf("a = " + repeated("{a=", deep) + "1" + std::string(deep, '}')),
            "no error");
  EXPECT_EQ(documents::readErrorOf("a = " + repeated("[{a=", deep) + "1" + repeated("}]", deep)), "no error");
  EXPECT_EQ(documents::readErrorOf("a" + repeated(".a", deep) + " = 1"), "no error");
  EXPECT_EQ(documents::readErrorOf("[a" + repeated(".a", deep) + "]"), "no error");
  EXPECT_EQ(documents::readErrorOf("[[a" + repeated(".a", deep) + "]]"), "no error");
}

TEST(HostileInput, deepNestingThatIsNotClosedIsRefused) {
  EXPECT_EQ(documents::parseErrorOf("a = " + std::string(deep, '[')),
            "(Line 1) Syntax error: expected a value");
  EXPECT_EQ(documents::parseErrorOf("a = " + repeated("{a=", deep)),
            "(Line 1) Syntax error: expected a value");
  EXPECT_EQ(documents::parseErrorOf(std::string(deep, '[')), "(Line 1) Syntax error: invalid or missing key");
}

TEST(HostileInput, arraysOfTablesThatGrowInTurnTakeRoomInProportion) {
  constexpr std::uint32_t count = 1000;
  const toml::TOMLTable table(repeated("[[x]]\n[[y]]\n", count));
  EXPECT_EQ(table.array("x").size(), count);
  EXPECT_EQ(table.array("y").size(), count);
  EXPECT_LE(table.source->elements.size(), 2 * 4 * count);
}

TEST(HostileInput, hugeNumbersAreReadOrRefused) {
  const std::string digits(100'000, '1');
  const toml::TOMLTable table("a = 1e999999999999\nb = -1e-999999999999\nc = " + digits + ".0\nd = 0." +
                              digits + "\ne = " + digits);
  EXPECT_EQ(table.value<double>("a"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(table.value<double>("b"), 0.0);
  EXPECT_EQ(table.value<double>("c"), std::numeric_limits<double>::infinity());
  EXPECT_DOUBLE_EQ(table.value<double>("d"), 1.0 / 9.0);
  EXPECT_NE(documents::errorOf([&] { table.value<std::int64_t>("e"); }), "no error");
}

TEST(HostileInput, theLineIsRightFarIntoADocument) {
  for (const std::size_t lines : {4094u, 4095u, 4096u, 4097u, 50'000u}) {
    EXPECT_EQ(documents::parseErrorOf(std::string(lines, '\n') + "!"),
              "(Line " + std::to_string(lines + 1) + ") Ill-formed key.");
    EXPECT_EQ(documents::readErrorOf(repeated("# a comment of a line\n", lines) + "a = 1x"),
              "(Line " + std::to_string(lines + 1) + ") Invalid integer: invalid digit for base 10: 'x'");
  }
}

TEST(HostileInput, theLineIsRightAtTheEndOfADocument) {
  for (const std::size_t size : {4095u, 4096u, 4097u, 8192u}) {
    EXPECT_EQ(documents::parseErrorOf(std::string(size - 3, '\n') + "a ="),
              "(Line " + std::to_string(size - 2) + ") Syntax error: expected a value");
  }
}

TEST(UTF8, theFirstAndLastCharactersOfEveryLengthAreRead) {
  for (const char* const text : {"\u0080", "\u07FF", "\u0800", "\u0FFF", "\u1000", "\uD7FF", "\uE000",
                                 "\uFFFF", "\U00010000", "\U0003FFFF", "\U00040000", "\U0010FFFF"}) {
    EXPECT_EQ(toml::TOMLTable("a = '"s + text + "'").value<std::string>("a"), text);
  }
}

TEST(UTF8, theFirstWrongByteIsFoundBehindAnyNumberOfRightOnes) {
  for (std::size_t length = 0; length < 100; ++length) {
    const std::string right(length, 'x');
    EXPECT_EQ(toml::UTF8::validPrefix(right), length);
    EXPECT_EQ(toml::UTF8::validPrefix(right + "\x80"), length);
    EXPECT_EQ(toml::UTF8::validPrefix(right + "\xC3\xA9\xF0\x9F\x98\x80\xE2\x82"), length + 6);
  }
}
