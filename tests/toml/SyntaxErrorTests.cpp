#include "tests/toml/Documents.h"

using documents::expectErrors;
using documents::syntax;
using namespace std::string_literals;

TEST(TOMLSyntax, aLineEndsBehindItsValueAndItsHeader) {
  expectErrors({
      {"a = 1 2", syntax(1, "extra chars after value")},
      {"a = 1 b = 2", syntax(1, "extra chars after value")},
      {"\na = \"x\"y", syntax(2, "extra chars after value")},
      {"a = [1] 2", syntax(1, "extra chars after value")},
      {"a = 1!", syntax(1, "extra chars after value")},
      {"a = 1979-05-27  07:32:00", syntax(1, "extra chars after value")},
      {"a = true\0"s, syntax(1, "extra chars after value")},
      {"[a] b = 1", syntax(1, "extra chars after ] or ]]")},
      {"\n\n[[a]] 1", syntax(3, "extra chars after ] or ]]")},
      {"[a]]", syntax(1, "extra chars after ] or ]]")},
  });
}

TEST(TOMLSyntax, aDateTakesInASpaceAndATimeOnlyInThePlaceOfAValue) {
  const std::string noEquals = syntax(1, "expected = behind the key");
  expectErrors({
      {"abcd-ef-gh 5 = 1", noEquals},
      {"abcd-ef-gh 5.x = 1", noEquals},
      {"1979-05-27 07 = 1", noEquals},
      {"1979-05-27 07:32:00 = 1", noEquals},
      {"a.1900-00-30 23:00:00. = 1", noEquals},
      {"a = {abcd-ef-gh 5 = 1}", noEquals},
      {"[abcd-ef-gh 5]", syntax(1, "expected ] behind the key")},
      {"[[abcd-ef-gh 5]]", syntax(1, "expected ]] behind the key")},
      {"a = abcdefg-hi 5", syntax(1, "extra chars after value")},
      {"a = abcd-efghi 5", syntax(1, "extra chars after value")},
      {"a = 1979-05-27 x", syntax(1, "extra chars after value")},
  });
}

TEST(TOMLSyntax, commentsHoldNoControlCharacters) {
  for (const char byte : "\x01\x08\x0B\x0C\x1F\x7F"s) {
    const std::string document = "a = 1\n# some words before it "s + byte + " and behind\n";
    EXPECT_EQ(documents::parseErrorOf(document), syntax(2, "control characters are not allowed in comments"));
  }
  EXPECT_EQ(documents::parseErrorOf("#\0"s), syntax(1, "control characters are not allowed in comments"));
  EXPECT_EQ(documents::parseErrorOf("# a\ttab, a lot of words, \u00E9 and another\ttab"), "no error");
}

TEST(TOMLSyntax, aCarriageReturnStandsBeforeANewline) {
  expectErrors({
      {"a = 1\rb = 2\n", syntax(1, "bare carriage return is not allowed")},
      {"a = 1\r", syntax(1, "bare carriage return is not allowed")},
      {"\r", syntax(1, "bare carriage return is not allowed")},
      {"a = 1\n# a comment\rb = 2\n", syntax(2, "bare carriage return is not allowed")},
      {"a = [1,\r2]", syntax(1, "bare carriage return is not allowed")},
      {"a = 1\r\nb = 2\r\n# comment\r\n", "no error"},
  });
}

TEST(TOMLSyntax, keysAreThereAndWellFormed) {
  expectErrors({
      {"= 1", syntax(1, "invalid or missing key")},
      {"\na = 1\n[]", syntax(3, "invalid or missing key")},
      {"[[]]", syntax(1, "invalid or missing key")},
      {"a..b = 1", syntax(1, "invalid or missing key")},
      {".a = 1", syntax(1, "invalid or missing key")},
      {"a. = 1", syntax(1, "invalid or missing key")},
      {"[a.]", syntax(1, "invalid or missing key")},
      {"[.a]", syntax(1, "invalid or missing key")},
      {"[ [a]]", syntax(1, "invalid or missing key")},
      {"a = { = 1 }", syntax(1, "invalid or missing key")},
      {"a = { b = 1, }", syntax(1, "invalid or missing key")},
      {"a = {\nb = 1 }", syntax(1, "invalid or missing key")},
      {"\"\"\"a\"\"\" = 1", "(Line 1) Ill-formed key."},
      {"\n'''a''' = 1", "(Line 2) Ill-formed key."},
      {"\u00E9 = 1", "(Line 1) Ill-formed key."},
      {"! = 1", "(Line 1) Ill-formed key."},
      {"[a$]", "(Line 1) Ill-formed key."},
      {"\"a\\q\" = 1", "(Line 1) Illegal escape character 'q'"},
      {"a = 1\n'a\x01' = 1", "(Line 2) Invalid character '\x01'"},
  });
}

TEST(TOMLSyntax, whatIsExpectedBehindAKeyIsTold) {
  expectErrors({
      {"a", syntax(1, "expected = behind the key")},
      {"a\n= 1", syntax(1, "expected = behind the key")},
      {"a b = 1", syntax(1, "expected = behind the key")},
      {"a! = 1", syntax(1, "expected = behind the key")},
      {"[a", syntax(1, "expected ] behind the key")},
      {"[a\n]", syntax(1, "expected ] behind the key")},
      {"[a b]", syntax(1, "expected ] behind the key")},
      {"[[a]", syntax(1, "expected ]] behind the key")},
      {"[[a] ]", syntax(1, "expected ]] behind the key")},
  });
}

TEST(TOMLSyntax, valuesAreThereAndBeginLikeOnes) {
  expectErrors({
      {"a =", syntax(1, "expected a value")},
      {"a =\n1", syntax(1, "expected a value")},
      {"a = # 1", syntax(1, "expected a value")},
      {"a = ]", syntax(1, "expected a value")},
      {"a = = 1", syntax(1, "expected a value")},
      {"a = [,]", syntax(1, "expected a value")},
      {"a = [1,,2]", syntax(1, "expected a value")},
      {"a = [", syntax(1, "expected a value")},
      {"a = [\n1,\n", syntax(3, "expected a value")},
      {"\na = !", "(Line 2) Invalid character '!'"},
      {"a = \u20AC", "(Line 1) Invalid character '\u20AC'"},
      {"a = [1, \0]"s, "(Line 1) Invalid character '\0'"s},
  });
}

TEST(TOMLSyntax, arraysAndInlineTablesAreClosed) {
  expectErrors({
      {"a = [1 2]", syntax(1, "expected , or ] in an array")},
      {"a = [\n1\n2]", syntax(3, "expected , or ] in an array")},
      {"a = [1", syntax(1, "expected , or ] in an array")},
      {"a = [1}", syntax(1, "expected , or ] in an array")},
      {"a = [[1] [2]]", syntax(1, "expected , or ] in an array")},
      {"a = {b = 1 c = 2}", syntax(1, "expected , or } in an inline table")},
      {"a = {b = 1\n}", syntax(1, "expected , or } in an inline table")},
      {"a = {b = 1", syntax(1, "expected , or } in an inline table")},
      {"a = {b = {c = 1} d = 2}", syntax(1, "expected , or } in an inline table")},
      {"a = {b = 1 # no comment }\n}", syntax(1, "expected , or } in an inline table")},
  });
}

TEST(TOMLSyntax, stringsAreClosed) {
  expectErrors({
      {"a = 'x\n'", syntax(1, "unterminated s-quote")},
      {"a = 'x\r\n'", syntax(1, "unterminated s-quote")},
      {"\na = \"x\n\"", syntax(2, "unterminated quote")},
      {"a = \"x\\\n\"", syntax(1, "unterminated quote")},
      {"a = \"x\r\n\"", syntax(1, "unterminated quote")},
      {"a = \"a string longer than a word of the machine\n\"", syntax(1, "unterminated quote")},
      {"a = \"\"\"x\n\n", syntax(1, "unterminated triple-d-quote")},
      {"a = \"\"\"x\"\" \\\"\"\"", syntax(1, "unterminated triple-d-quote")},
      {"a = 1\nb = '''x''", syntax(2, "unterminated triple-s-quote")},
      {"a = \"x", syntax(1, "missing closing quote")},
      {"a = \"x\\", syntax(1, "missing closing quote")},
      {"a = \"x\\\"", syntax(1, "missing closing quote")},
      {"a = 'x", syntax(1, "missing closing quote")},
      {"\"a", syntax(1, "missing closing quote")},
  });
}

TEST(TOMLSyntax, atMostTwoQuotesStandBeforeTheClosingOnes) {
  expectErrors({
      {R"(a = """x""""""x""")",
       syntax(1, "basic multiline strings cannot contain more than 2 consecutive double quotes")},
      {"a = '''x''''''x'''",
       syntax(1, "literal multiline strings cannot contain more than 2 consecutive single quotes")},
      {"\n"
       R"(a = """""""""")",
       syntax(2, "basic multiline strings cannot contain more than 2 consecutive double quotes")},
      {R"(a = """x""""")", "no error"},
      {"a = '''x'''''", "no error"},
  });
}

TEST(TOMLSyntax, whatIsNoUTF8IsTold) {
  expectErrors({
      {"a = \"\xFF\"", "(Line 1) The given data was not valid UTF8."},
      {"a = 1\n\n# \xC0\xAF", "(Line 3) The given data was not valid UTF8."},
      {"\xFF\xFE", "(Line 1) The given data was not valid UTF8."},
  });
}
