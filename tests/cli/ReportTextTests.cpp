#include <gtest/gtest.h>

#include "QuarnCLI/report/ReportText.h"

namespace quarn {
namespace {

TEST(ReportText, linesAreJoinedByALineFeedWithOneAtTheEnd) {
  EXPECT_EQ(ReportText::joined({"a"}), "a\n");
  EXPECT_EQ(ReportText::joined({"a", "", "b"}), "a\n\nb\n");
}

TEST(ReportText, noLinesGiveOneLineFeed) {
  EXPECT_EQ(ReportText::joined({}), "\n");
}

TEST(ReportText, fieldsAreSeparatedByOneTab) {
  EXPECT_EQ(ReportText::tabSeparated({"a", "", "b"}), "a\t\tb");
}

TEST(ReportText, aTabOrLineFeedInAFieldPassesThrough) {
  EXPECT_EQ(ReportText::tabSeparated({"/a\nb", "c\td", "\"e\""}), "/a\nb\tc\td\t\"e\"");
}

}  // namespace
}  // namespace quarn
