#include <gtest/gtest.h>
#include <set>

#include "Platform/UUID.h"
#include "tests/support/Patterns.h"

namespace quarn {

TEST(UUID, anIdentifierIsRandomUpperCaseText) {
  const std::string form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (int i = 0; i < 100; ++i) {
    const auto identifier = UUID::make();
    EXPECT_TRUE(patterns::match(identifier, form)) << identifier;
  }
}

TEST(UUID, noTwoAreAlike) {
  std::set<std::string> identifiers;
  for (int i = 0; i < 1000; ++i) identifiers.insert(UUID::make());
  EXPECT_EQ(identifiers.size(), 1000u);
}

}  // namespace quarn
