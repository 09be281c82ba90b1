#include "tests/toml/Documents.h"

using documents::integer;
using documents::tagged;
using namespace std::string_literals;

namespace {

struct Row {
  std::string document;
  std::string json;
};

void expectContents(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(taggedJson(toml::TOMLTable(row.document)), row.json) << row.document;
  }
}

/// Every value is what `a` is set to, and is read as this.
void expectValues(const std::string& type, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(taggedJson(toml::TOMLTable("a = " + row.document)), "{\"a\":" + tagged(type, row.json) + "}")
        << row.document;
  }
}

}  // namespace

TEST(TOMLGrammar, blanksCommentsAndNewlinesMeanNothing) {
  expectContents({
      {"", "{}"},
      {"\n\n \t\r\n", "{}"},
      {"# only a comment", "{}"},
      {"\uFEFF", "{}"},
      {"\uFEFF# a mark before it\na = 1", "{\"a\":" + integer(1) + "}"},
      {"a=1", "{\"a\":" + integer(1) + "}"},
      {"  a\t=  1\t # one\r\n", "{\"a\":" + integer(1) + "}"},
      {"a = [ # one\n 1, # two\n\n 2 # three\n , ]", "{\"a\":[" + integer(1) + "," + integer(2) + "]}"},
      {" [ a . \"b\" ] # header\n", "{\"a\":{\"b\":{}}}"},
      {"a . b = 1", "{\"a\":{\"b\":" + integer(1) + "}}"},
  });
}

TEST(TOMLGrammar, keysAreBareQuotedOrDotted) {
  const std::string one = integer(1);
  expectContents({
      {"A-z_09 = 1", "{\"A-z_09\":" + one + "}"},
      {"1234 = 1", "{\"1234\":" + one + "}"},
      {"3.14 = 1", "{\"3\":{\"14\":" + one + "}}"},
      {"true = 1", "{\"true\":" + one + "}"},
      {"\"\" = 1", "{\"\":" + one + "}"},
      {"'' = 1", "{\"\":" + one + "}"},
      {"\"a.b\" = 1", "{\"a.b\":" + one + "}"},
      {"'a\\b' = 1", "{\"a\\\\b\":" + one + "}"},
      {"\"\\u00E9\" = 1", "{\"\u00E9\":" + one + "}"},
      {"\"\u00E9\" = 1", "{\"\u00E9\":" + one + "}"},
      {"a.'b c'.\"d\" = 1", "{\"a\":{\"b c\":{\"d\":" + one + "}}}"},
      {"[-.--.\"]\"]", "{\"-\":{\"--\":{\"]\":{}}}}"},
  });
}

TEST(TOMLGrammar, stringsOfOneLine) {
  expectValues("string", {
                             {R"("")", ""},
                             {R"('')", ""},
                             {R"("a 'b' # c, [d] = {e}")", "a 'b' # c, [d] = {e}"},
                             {R"("\"\\")", R"(\"\\)"},
                             {R"("\b\t\n\f\r")", R"(\u0008\u0009\u000a\u000c\u000d)"},
                             {R"("\u00e9\u20AC\U0001F600")", "\u00E9\u20AC\U0001F600"},
                             {R"("\u0000")", R"(\u0000)"},
                             {R"("\uD7FF\uE000\U0010FFFF")", "\uD7FF\uE000\U0010FFFF"},
                             {"\"a\ttab\"", R"(a\u0009tab)"},
                             {R"('\n "x" \')", R"(\\n \"x\" \\)"},
                         });
}

TEST(TOMLGrammar, stringsOfManyLines) {
  expectValues("string", {
                             {R"("""""")", ""},
                             {"''''''", ""},
                             {"\"\"\"\na\nb\"\"\"", R"(a\u000ab)"},
                             {"\"\"\"\r\na\r\nb\"\"\"", R"(a\u000d\u000ab)"},
                             {"\"\"\"\n\na\"\"\"", R"(\u000aa)"},
                             {"'''\na\nb'''", R"(a\u000ab)"},
                             {"\"\"\"a \\\n   b\"\"\"", "a b"},
                             {"\"\"\"a\\\n\n \t\r\n  b\"\"\"", "ab"},
                             {"\"\"\"a\\  \t\n b\"\"\"", "ab"},
                             {"\"\"\"\\\n\"\"\"", ""},
                             {R"("""a"b""c""")", R"(a\"b\"\"c)"},
                             {R"("""a""""")", R"(a\"\")"},
                             {R"("""""""")", R"(\"\")"},
                             {"'''a'b''c'''''", "a'b''c''"},
                             {R"("""a\"""b""")", R"(a\"\"\"b)"},
                             {R"("""\\""")", R"(\\)"},
                             {R"('''\''')", R"(\\)"},
                         });
}

TEST(TOMLGrammar, integers) {
  expectValues("integer", {
                              {"0", "0"},
                              {"+0", "0"},
                              {"-0", "0"},
                              {"42", "42"},
                              {"+99", "99"},
                              {"-17", "-17"},
                              {"1_000", "1000"},
                              {"1_2_3", "123"},
                              {"9223372036854775807", "9223372036854775807"},
                              {"-9223372036854775808", "-9223372036854775808"},
                              {"0xDEADbeef", "3735928559"},
                              {"0xdead_BEEF", "3735928559"},
                              {"0x00ff", "255"},
                              {"0o0755", "493"},
                              {"0b1101_0110", "214"},
                              {"0x7fffffffffffffff", "9223372036854775807"},
                          });
}

TEST(TOMLGrammar, floats) {
  expectValues("float", {
                            {"1.0", "1"},
                            {"+1.5", "1.5"},
                            {"-0.25", "-0.25"},
                            {"-0.0", "-0"},
                            {"0e0", "0"},
                            {"5e+22", "4.9999999999999996e+22"},
                            {"1e06", "1000000"},
                            {"-2E-2", "-0.02"},
                            {"6.626e-34", "6.6259999999999998e-34"},
                            {"1.5e-3", "0.0015"},
                            {"0.1e-5", "9.9999999999999995e-07"},
                            {"9_224.5_5", "9224.5499999999993"},
                            {"1_0e1_0", "100000000000"},
                            {"123456789012345678.5", "1.2345678901234568e+17"},
                            {"0.1", "0.10000000000000001"},
                            {"954085567341.69085", "954085567341.6908"},
                            {"7.7772113109844870", "7.7772113109844874"},
                            {"3.1415926535897931", "3.1415926535897931"},
                            {"96.19418413357519", "96.194184133575192"},
                            {"155.976840142675154", "155.97684014267514"},
                            {"1.7976931348623157e308", "1.7976931348623157e+308"},
                            {"1.7976931348623159e308", "inf"},
                            {"1e400", "inf"},
                            {"-1e400", "-inf"},
                            {"1e-400", "0"},
                            {"inf", "inf"},
                            {"+inf", "inf"},
                            {"-inf", "-inf"},
                            {"nan", "nan"},
                            {"+nan", "nan"},
                            {"-nan", "nan"},
                        });
}

TEST(TOMLGrammar, booleansAndDates) {
  expectValues("bool", {{"true", "true"}, {"false", "false"}});
  expectValues("datetime", {
                               {"1979-05-27T07:32:00Z", "1979-05-27T07:32:00Z"},
                               {"1979-05-27 07:32:00z", "1979-05-27T07:32:00Z"},
                               {"1979-05-27t00:32:00-07:00", "1979-05-27T00:32:00-07:00"},
                               {"1979-05-27T00:32:00.999999+05:45", "1979-05-27T00:32:00.999999+05:45"},
                               {"1979-05-27T00:32:00-00:00", "1979-05-27T00:32:00+00:00"},
                           });
  expectValues("datetime-local", {
                                     {"1979-05-27T07:32:00", "1979-05-27T07:32:00"},
                                     {"1979-05-27 07:32:00.5 # c", "1979-05-27T07:32:00.5"},
                                 });
  expectValues("date-local", {{"2000-02-29", "2000-02-29"}, {"0000-01-01", "0000-01-01"}});
  expectValues("time-local", {{"23:59:59", "23:59:59"}, {"00:00:00.123456789123", "00:00:00.123456789"}});
}

TEST(TOMLGrammar, arraysAndInlineTables) {
  const std::string one = integer(1);
  const std::string two = integer(2);
  expectContents({
      {"a = []", "{\"a\":[]}"},
      {"a = [\n\n]", "{\"a\":[]}"},
      {"a = [1,]", "{\"a\":[" + one + "]}"},
      {"a = [1, [1, 2], {b = 1}, 'x']",
       "{\"a\":[" + one + ",[" + one + "," + two + "],{\"b\":" + one + "}," + tagged("string", "x") + "]}"},
      {"a = [[[]], [[1]]]", "{\"a\":[[[]],[[" + one + "]]]}"},
      {"a = {}", "{\"a\":{}}"},
      {"a = {b = 1, c.d = 2}", "{\"a\":{\"b\":" + one + ",\"c\":{\"d\":" + two + "}}}"},
      {"a = {b = [\n1,\n2\n]}", "{\"a\":{\"b\":[" + one + "," + two + "]}}"},
      {"a = [1979-05-27 07:32:00, 1979-05-27]", "{\"a\":[" + tagged("datetime-local", "1979-05-27T07:32:00") +
                                                    "," + tagged("date-local", "1979-05-27") + "]}"},
  });
}

TEST(TOMLGrammar, headersAndArraysOfTables) {
  const std::string one = integer(1);
  const std::string two = integer(2);
  expectContents({
      {"[a]\nb = 1\n[c]\n", "{\"a\":{\"b\":" + one + "},\"c\":{}}"},
      {"[a.b]\nc = 1\n[a]\nd = 2", "{\"a\":{\"d\":" + two + ",\"b\":{\"c\":" + one + "}}}"},
      {"[[a]]\nb = 1\n[[a]]\n[[a]]\nb = 2", "{\"a\":[{\"b\":" + one + "},{},{\"b\":" + two + "}]}"},
      {"[[a]]\n[a.b]\nc = 1\n[[a]]\n[a.b]\nc = 2",
       "{\"a\":[{\"b\":{\"c\":" + one + "}},{\"b\":{\"c\":" + two + "}}]}"},
      {"[[a]]\n[[a.b]]\n[[a.b]]\n[[a]]\n[[a.b]]", "{\"a\":[{\"b\":[{},{}]},{\"b\":[{}]}]}"},
      {"[[a]]\nx = [1]\n[[a]]\nx = [1, 2]\n[[a]]\nx = []",
       "{\"a\":[{\"x\":[" + one + "]},{\"x\":[" + one + "," + two + "]},{\"x\":[]}]}"},
  });
}
