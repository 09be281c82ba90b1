#include "bench/TOMLDocuments.h"

namespace bench {
namespace {

using Key = std::string_view;

void writeStrings(DocumentWriter& writer, const std::string& number) {
  writer.value("title", Holds::text, "\"Block number " + number + " of the document\"");
  writer.value("path", Holds::text, "'C:\\Program Files\\Block " + number + "'");
  writer.value("escaped", Holds::text,
               R"("a tab\there, a \"quote\", caf\u00e9 \U0001F600, and the end\n of )" + number + '"');
  writer.value("unicode", Holds::text, "\"Grüße aus Köln, 東京 und Москва " + number + "\"");
  writer.value("\"quoted key \\u00e9\"", "quoted key é", Holds::text, "\"\"");
  writer.value("several", Holds::text,
               "\"\"\"\nThe first line of " + number +
                   ",\nthe second one, \\\n    which goes on here, and \"quotes\".\n\"\"\"");
  writer.value("literal", Holds::text,
               "'''\nNothing \\is escaped\nin " + number + ", and 'quotes' are fine.\n'''");
}

void writeNumbers(DocumentWriter& writer, int number) {
  const std::string plain = std::to_string(number);
  writer.line("# Numbers, in all the ways that they are written.");
  writer.value("count", Holds::integer, plain);
  writer.value("negative", Holds::integer, "-9_876_" + std::to_string(100 + number % 900));
  writer.value("large", Holds::integer, "9223372036854" + std::to_string(100'000 + number));
  writer.value("hexadecimal", Holds::integer, "0xDEAD_beef");
  writer.value("octal", Holds::integer, "0o755");
  writer.value("binary", Holds::integer, "0b1101_0110  # flags");
  writer.value("ratio", Holds::number, "3.14159" + plain);
  writer.value("exponent", Holds::number, "6.626e-34");
  writer.value("price", Holds::number, plain + ".99");
  writer.value("endless", Holds::number, number % 2 == 0 ? "inf" : "-inf");
  writer.value("enabled", Holds::boolean, number % 2 == 0 ? "true" : "false");
}

void writeDates(DocumentWriter& writer, int number) {
  const std::string year = std::to_string(1900 + number % 200);
  writer.value("made", Holds::offsetDateTime, year + "-05-27T07:32:00Z");
  writer.value("seen", Holds::offsetDateTime, year + "-05-27T00:32:00.999999-07:00");
  writer.value("planned", Holds::localDateTime, year + "-12-31 23:59:59");
  writer.value("day", Holds::date, year + "-02-28");
  writer.value("hour", Holds::time, "07:32:00.5");
}

void planList(DocumentWriter& writer, Where where, Holds holds, std::size_t count) {
  writer.open(Holds::array, where);
  for (std::size_t place = 0; place < count; ++place) writer.plan(holds, place);
  writer.close();
}

void writeArrays(DocumentWriter& writer, const std::string& number) {
  writer.line("primes = [2, 3, 5, 7, 11, 13, 17, 19, 23, " + number + "]");
  planList(writer, Key("primes"), Holds::integer, 10);
  writer.line("words = [\n  \"one\",  # the first\n  'two',\n  \"" + number + "\",\n]");
  planList(writer, Key("words"), Holds::text, 3);
  writer.line("matrix = [[1.5, 2.5, 3.5], [4.5, 5.5, " + number + ".5]]");
  writer.open(Holds::array, Key("matrix"));
  planList(writer, std::size_t{0}, Holds::number, 3);
  planList(writer, std::size_t{1}, Holds::number, 3);
  writer.close();
}

void writeInlineTables(DocumentWriter& writer, const std::string& number) {
  writer.line("owner = { name = \"Owner " + number + "\", age = " + number + ", tags = [\"a\", \"b\"] }");
  writer.open(Holds::table, Key("owner"));
  writer.plan(Holds::text, Key("name"));
  writer.plan(Holds::integer, Key("age"));
  planList(writer, Key("tags"), Holds::text, 2);
  writer.close();
  writer.line("points = [{ x = 1, y = " + number + " }, { x = 3, y = 4 }]");
  writer.open(Holds::array, Key("points"));
  for (std::size_t place = 0; place < 2; ++place) {
    writer.open(Holds::table, place);
    writer.plan(Holds::integer, Key("x"));
    writer.plan(Holds::integer, Key("y"));
    writer.close();
  }
  writer.close();
}

void writeDottedKeys(DocumentWriter& writer, const std::string& number) {
  writer.open(Holds::table, Key("server"));
  writer.open(Holds::table, Key("host"));
  writer.value("server.host.name", "name", Holds::text, "\"host-" + number + ".example.com\"");
  writer.value("server.host.port", "port", Holds::integer, number);
  writer.close();
  writer.value("server.secure", "secure", Holds::boolean, "true");
  writer.close();
}

void writeNested(DocumentWriter& writer, const std::string& block) {
  writer.line("\n[" + block + ".nested.deeper]");
  writer.open(Holds::table, Key("nested"));
  writer.open(Holds::table, Key("deeper"));
  writer.value("depth", Holds::integer, "3");
  writer.value("note", Holds::text, "\"two tables further down\"");
  writer.close(2);
}

void writeElements(DocumentWriter& writer, const std::string& block, const std::string& number) {
  writer.open(Holds::array, Key("products"));
  for (std::size_t place = 0; place < 3; ++place) {
    writer.line("\n[[" + block + ".products]]");
    writer.open(Holds::table, place);
    writer.value("name", Holds::text, "\"Hammer " + number + "\"");
    writer.value("sku", Holds::integer, "738594937");
    writer.value("weight", Holds::number, "0.75");
    writer.close();
  }
  writer.close();
}

}  // namespace

void writeMixedBlock(DocumentWriter& writer, int number) {
  const std::string plain = std::to_string(10'000 + number);
  const std::string block = "block-" + plain;
  writer.line("\n# ---- What follows is block " + plain + ", a little of everything. ----");
  writer.line("[" + block + "]");
  writer.open(Holds::table, block);
  writeStrings(writer, plain);
  writeNumbers(writer, 10'000 + number);
  writeDates(writer, number);
  writeArrays(writer, plain);
  writeInlineTables(writer, plain);
  writeDottedKeys(writer, plain);
  writeNested(writer, block);
  writeElements(writer, block, plain);
  writer.close();
}

}  // namespace bench
