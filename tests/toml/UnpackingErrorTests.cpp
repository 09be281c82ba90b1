#include "TOMLDecoder/TOMLArray.h"
#include "tests/toml/Documents.h"

using namespace std::string_literals;

namespace {

struct Row {
  std::string value;
  std::string message;
};

/// Every value is what the second line sets `a` to: the document parses, and reading `a` as a T fails with
/// exactly this text.
template <typename T>
void expectFaults(const std::string& kind, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    const toml::TOMLTable table("\na = " + row.value + "\n");
    EXPECT_EQ(documents::errorOf([&] { table.value<T>("a"); }), "(Line 2) " + kind + row.message)
        << row.value;
  }
}

std::string invalidInteger(const std::string& text, int base) {
  return text + " is a invalid integer of base " + std::to_string(base);
}

}  // namespace

TEST(IntegerUnpacking, tellsTheRuleThatIsBroken) {
  expectFaults<std::int64_t>("Invalid integer: ",
                             {
                                 {"_1", "cannot start with a '_'"},
                                 {"+0x1", "hexadecimal integers cannot have explicit signs"},
                                 {"-0xF", "hexadecimal integers cannot have explicit signs"},
                                 {"+0o1", "octal integers cannot have explicit signs"},
                                 {"-0b1", "binary integers cannot have explicit signs"},
                                 {"0x_1", "cannot use '_' adjacent to a non-digit"},
                                 {"+_1", "cannot use '_' adjacent to a non-digit"},
                                 {"1_a", "cannot use '_' adjacent to a non-digit"},
                                 {"1a_2", "cannot use '_' adjacent to a non-digit"},
                                 {"1_", "cannot end with a '_'"},
                                 {"0x1_", "cannot end with a '_'"},
                                 {"1__2", "cannot contain consecutive '_'"},
                                 {"0b1__0", "cannot contain consecutive '_'"},
                                 {"01", "decimal integers cannot have leading zeros"},
                                 {"-00", "decimal integers cannot have leading zeros"},
                                 {"0_1", "decimal integers cannot have leading zeros"},
                                 {"0x", invalidInteger("0x", 16)},
                                 {"+", invalidInteger("+", 10)},
                                 {"9223372036854775808", invalidInteger("9223372036854775808", 10)},
                                 {"-9223372036854775809", invalidInteger("-9223372036854775809", 10)},
                                 {"0x8000000000000000", invalidInteger("0x8000000000000000", 16)},
                                 {"0xg", "invalid digit for base 16: 'g'"},
                                 {"0o8", "invalid digit for base 8: '8'"},
                                 {"0b2", "invalid digit for base 2: '2'"},
                                 {"12x", "invalid digit for base 10: 'x'"},
                                 {"1.5", "invalid digit for base 10: '.'"},
                                 {"++1", "invalid digit for base 10: '+'"},
                                 {"\"1\"", "invalid digit for base 10: '\"'"},
                             });
  expectFaults<std::int64_t>("Invalid integer: ",
                             {{std::string(100'000, '9'), invalidInteger(std::string(100'000, '9'), 10)}});
}

TEST(FloatUnpacking, tellsTheRuleThatIsBroken) {
  expectFaults<double>("Invalid float: ",
                       {
                           {"infinity", "Expected nan or inf, found infinity"},
                           {"+nano", "Expected nan or inf, found nano"},
                           {"_1.0", "'_' must be preceded by a digit"},
                           {"1.5e_1", "'_' must be preceded by a digit"},
                           {"1.5e+_1", "'_' must be preceded by a digit"},
                           {"1_.0", "'_' must be follewed by a digit"},
                           {"1__0.0", "'_' must be follewed by a digit"},
                           {"1.0_", "'_' must be follewed by a digit"},
                           {"01.0", "Float begins with 0 must be followed by a '.', 'e' or 'E'"},
                           {"-00.5", "Float begins with 0 must be followed by a '.', 'e' or 'E'"},
                           {"0", "Float begins with 0 must be followed by a '.', 'e' or 'E'"},
                           {"1.", "A digit must follow '.'"},
                           {"1.e5", "A digit must follow '.'"},
                           {"1._5", "A digit must follow '.'"},
                           {".5", "First digit of floats cannot be '.'"},
                           {"+.5", "'.' must be preceded by a decimal digit"},
                           {"1e.5", "'.' must be preceded by a decimal digit"},
                           {"1e5.5", "'.' must be preceded by a decimal digit"},
                           {"1.5x", "invalid character for float"},
                           {"1.5.5", "invalid character for float"},
                           {"1e", "invalid character for float"},
                           {"1e+", "invalid character for float"},
                           {"1e5e5", "invalid character for float"},
                           {"-", "invalid character for float"},
                           {"0x1.8", "invalid character for float"},
                           {"\"1.5\"", "invalid character for float"},
                       });
}

TEST(FloatUnpacking, anIntegerIsNoFloat) {
  expectFaults<double>("Invalid float: ", {{"12", "12 is an integer"}, {"-3", "3 is an integer"}});
}

TEST(StringUnpacking, tellsTheEscapeThatIsWrong) {
  expectFaults<std::string>("", {
                                    {R"("\q")", "Illegal escape character 'q'"},
                                    {R"("\x41")", "Illegal escape character 'x'"},
                                    {"\"\\\u00E9\"", "Illegal escape character '\u00E9'"},
                                    {R"("\ ")", "Illegal escape character ' '"},
                                    {R"("""\ x""")", "Illegal escape character ' '"},
                                    {R"("\u12")", "Expected hexadecimal characters, found '12'"},
                                    {R"("\u")", "Expected hexadecimal characters, found ''"},
                                    {R"("\U0001F60")", "Expected hexadecimal characters, found '0001F60'"},
                                    {R"("\u12G4")", "Invalid hexadecimal characters '12G4'"},
                                    {R"("\U0000-041")", "Invalid hexadecimal characters '0000-041'"},
                                    {R"("\uD800")", "Illegal UCS code 'D800'"},
                                    {R"("\uDFFF")", "Illegal UCS code 'DFFF'"},
                                    {R"("\U00110000")", "Illegal UCS code '00110000'"},
                                    {R"("\UFFFFFFFF")", "Illegal UCS code 'FFFFFFFF'"},
                                });
}

TEST(StringUnpacking, tellsTheControlCharacterThatIsNotAllowed) {
  for (const char quote : {'"', '\''}) {
    for (const char byte : "\0\x01\x08\x0B\x0C\x1F\x7F"s) {
      const std::string single = quote + "some text "s + byte + " and more" + quote;
      const std::string triple = std::string(2, quote) + single + std::string(2, quote);
      const Row row{single, "Invalid character '"s + byte + "'"};
      expectFaults<std::string>("", {row, {triple, row.message}});
    }
    const std::string bare = std::string(3, quote) + "a\rb" + std::string(3, quote);
    expectFaults<std::string>("", {{bare, "Invalid character '\r'"}});
  }
}

TEST(StringUnpacking, whatHasNoQuotesIsNoString) {
  expectFaults<std::string>("Invalid string: ", {{"12", "12"}, {"true", "true"}});
}

TEST(BooleanUnpacking, onlyTheTwoWordsAreBooleans) {
  expectFaults<bool>("Invalid boolean: ",
                     {{"True", "True"}, {"tru", "tru"}, {"1", "1"}, {"\"true\"", "\"true\""}});
}

TEST(ValueKind, aValueOfNoKindIsTold) {
  EXPECT_EQ(documents::parseErrorOf("\na = hello"), "no error");
  EXPECT_EQ(documents::readErrorOf("\na = hello"),
            "(Line 2) The given data was not valid TOML. Key 'a' has the value 'hello'");
  EXPECT_EQ(documents::readErrorOf("a = [1,\nTrue]"),
            "(Line 2) The given data was not valid TOML. Key '1' has the value 'True'");
}
