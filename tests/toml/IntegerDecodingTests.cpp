#include "TOMLDecoder/TOMLDecoder.h"
#include "tests/toml/Documents.h"

namespace {

std::int64_t leniently(const std::string& value) {
  toml::TOMLDecoder decoder;
  decoder.isLenient = true;
  return decoder.decode<std::map<std::string, std::int64_t>>("a = " + value).at("a");
}

std::string faultOf(const std::string& value) {
  return documents::errorOf([&] { leniently(value); });
}

}  // namespace

TEST(IntegerDecoding, lenientlyAFloatIsAnIntegerUpToTheEndsOfTheType) {
  EXPECT_EQ(leniently("-9223372036854775808.0"), INT64_MIN);
  EXPECT_EQ(leniently("9223372036854774784.0"), 9223372036854774784);
  for (const std::string number : {"9223372036854775808.0", "-9223372036854777856.0"}) {
    EXPECT_EQ(faultOf(number),
              "(Line 1) Invalid number: " + number + " cannot be represented by type Int64.");
  }
}
