#include "tests/toml/Documents.h"

using documents::expectErrors;
using documents::syntax;

namespace {

std::string exists(int line) {
  return "(Line " + std::to_string(line) + ") Key already exists.";
}

}  // namespace

TEST(TOMLTableRules, aKeyIsDefinedOnce) {
  expectErrors({
      {"a = 1\na = 2", exists(2)},
      {"a = 1\n\"a\" = 2", exists(2)},
      {"a = 1\n'a' = 2", exists(2)},
      {"a = 1\n\"\\u0061\" = 2", exists(2)},
      {"a.b = 1\na.b = 2", exists(2)},
      {"a.b = 1\na = 2", exists(2)},
      {"a = []\na = 2", exists(2)},
      {"a = 1\na = []", exists(2)},
      {"a = 1\na = {}", exists(2)},
      {"a = {b = 1, b = 2}", exists(1)},
      {"[a.b]\n[a]\nb = 1", exists(3)},
      {"[[a.b]]\n[a]\nb = 1", exists(3)},
      {"a_long_key_of_many_bytes = 1\na_long_key_of_many_bytes = 2", exists(2)},
      {"[x]\na = 1\n[y]\na = 1", "no error"},
  });
}

TEST(TOMLTableRules, aValueIsNoTable) {
  expectErrors({
      {"a = 1\n[a]", syntax(2, "key-value already exists")},
      {"a = 1\n[[a]]", syntax(2, "key-value already exists")},
      {"a = 1\n[a.b]", syntax(2, "key-value already exists")},
      {"a = 1\na.b = 2", syntax(2, "key-value already exists")},
      {"a = {b = 1, b.c = 2}", syntax(1, "key-value already exists")},
      {"a.b = 1\n[a.b.c]", syntax(2, "key-value already exists")},
  });
}

TEST(TOMLTableRules, aHeaderNamesATableOnce) {
  expectErrors({
      {"[a]\n[a]", syntax(2, "cannot insert new entry into existing table")},
      {"[a]\nb = 1\n[c]\n[a]\nd = 2", syntax(4, "cannot insert new entry into existing table")},
      {"[a]\n[\"a\"]", syntax(2, "cannot insert new entry into existing table")},
      {"a.b = 1\n[a]", syntax(2, "cannot insert new entry into existing table")},
      {"[t]\na.b.c = 1\n[t.a.b]", syntax(3, "cannot insert new entry into existing table")},
      {"[a.b.c]\n[a]\nb.d = 1\n[a.b]", syntax(4, "cannot insert new entry into existing table")},
      {"[a.b]\n[a]\n[a]", syntax(3, "cannot insert new entry into existing table")},
      {"[a.b]\n[a]\nc = 1", "no error"},
      {"[a.b]\n[a.c]\n[a]", "no error"},
      {"[t]\na.b = 1\n[t.a.c]", "no error"},
  });
}

TEST(TOMLTableRules, tablesOfHeadersAreClosedToDottedKeys) {
  const std::string message = "cannot add to explicitly defined table using dotted keys";
  expectErrors({
      {"[a.b]\nc = 1\n[a]\nb.d = 2", syntax(4, message)},
      {"[a.b.c]\n[a]\nb.c.d = 2", syntax(3, message)},
      {"[a.b.c]\n[a]\nb.d = 2", "no error"},
      {"[a.b.c]\n[a]\nb.d = 1\nb.e = 2", "no error"},
  });
}

TEST(TOMLTableRules, inlineTablesAreClosed) {
  expectErrors({
      {"a = {}\n[a]", syntax(2, "cannot add to inline table")},
      {"a = {}\n[a.b]", syntax(2, "cannot add to inline table")},
      {"a = {}\n[[a.b]]", syntax(2, "cannot add to inline table")},
      {"a = {}\na.b = 1", syntax(2, "cannot add to inline table")},
      {"a = {b = {}}\na.b.c = 1", syntax(2, "cannot add to inline table")},
      {"a = {b.c = 1}\n[a.b.d]", syntax(2, "cannot add to inline table")},
      {"a = {b = {c = 1}, b.d = 2}", syntax(1, "cannot add to inline table")},
      {"a = [{b = 1}]\n[a.c]", syntax(2, "cannot add to inline table")},
      {"a = {b.c = 1, b.d = 2}", "no error"},
  });
}

TEST(TOMLTableRules, arraysInBracketsAreClosed) {
  expectErrors({
      {"a = []\n[[a]]", exists(2)},
      {"a = [{}]\n[[a]]", exists(2)},
      {"a = [1]\n[a]", exists(2)},
      {"a = [1]\na.b = 1", exists(2)},
      {"a = [1]\n[a.b]", syntax(2, "array element is not a table")},
      {"a = []\n[a.b]", syntax(2, "array element is not a table")},
      {"a = [[]]\n[a.b]", syntax(2, "array element is not a table")},
      {"a = [{}, 1]\n[[a.b]]", syntax(2, "array element is not a table")},
  });
}

TEST(TOMLTableRules, anArrayOfTablesIsNoTable) {
  expectErrors({
      {"[a]\n[[a]]", exists(2)},
      {"[a.b]\n[[a]]", exists(2)},
      {"[[a]]\n[a]", exists(2)},
      {"[[a.b]]\n[a]\nb.c = 1", exists(3)},
      {"[[a]]\n[[a.b]]\n[a.b]", exists(3)},
      {"[[a]]\n[a.b]\n[[a]]\n[a.b]", "no error"},
  });
}
