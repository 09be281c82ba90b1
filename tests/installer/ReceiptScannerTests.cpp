#include <gtest/gtest.h>

#include "QuarnCore/installer/ReceiptScanner.h"
#include "tests/support/FakeTools.h"

namespace quarn {
namespace {

using IDs = std::set<std::string>;
using List = std::vector<std::string>;

struct Receipts : testing::Test {
  doubles::FakeTools tools;

  IDs afterThePrintOf(const std::string& output, int status = 0) {
    tools.answers["/usr/sbin/pkgutil "] = {
        .status = status, .output = output, .error = "com.example.error\n"};
    return ReceiptScanner::capture(tools.platform()).packageIDs;
  }
};

TEST_F(Receipts, areTheLinesThatPkgutilPrints) {
  EXPECT_EQ(afterThePrintOf("com.example.b\ncom.example.a\n\n com.example.c \n\ncom.example.a\nlast"),
            (IDs{" com.example.c ", "com.example.a", "com.example.b", "last"}));
  EXPECT_EQ(tools.calls, (std::vector<List>{{"/usr/sbin/pkgutil", "--pkgs"}}));
}

TEST_F(Receipts, countWhateverTheExitStatus) {
  EXPECT_EQ(afterThePrintOf("com.example.a\n", 1), IDs{"com.example.a"});
  EXPECT_EQ(afterThePrintOf("", 1), IDs{});
}

TEST_F(Receipts, areWaitedForWithoutALimit) {
  tools.answers["/usr/sbin/pkgutil --pkgs"] = {.output = "com.example.a\n", .hangs = true};
  EXPECT_EQ(ReceiptScanner::capture(tools.platform()).packageIDs, IDs{"com.example.a"});
  EXPECT_EQ(tools.secondsWaited(), 0) << "nobody looked at the clock";
}

TEST_F(Receipts, areNotNewIfNobodyCouldBeAskedBefore) {
  const ReceiptSnapshot unknown = ReceiptScanner::capture(tools.platform());
  EXPECT_FALSE(unknown.isKnown) << "the tool is missing";
  tools.answers["/usr/sbin/pkgutil "] = {.status = 1};
  EXPECT_FALSE(ReceiptScanner::capture(tools.platform()).isKnown) << "it failed, and printed nothing";
  tools.answers["/usr/sbin/pkgutil "] = {.status = 0};
  const ReceiptSnapshot none = ReceiptScanner::capture(tools.platform());
  EXPECT_TRUE(none.isKnown);
  const ReceiptSnapshot after{{"com.example.a"}};
  EXPECT_EQ(ReceiptScanner::added(unknown, after), List{});
  EXPECT_EQ(ReceiptScanner::added(none, after), List{"com.example.a"});
}

TEST_F(Receipts, areNoneWithoutTheToolOrItsText) {
  EXPECT_EQ(ReceiptScanner::capture(tools.platform()).packageIDs, IDs());
  EXPECT_EQ(afterThePrintOf("com.example.a\n\xFF\n"), IDs{});
}

TEST(AddedReceipts, areThoseThatAppearedSorted) {
  const ReceiptSnapshot before{{"com.example.b", "com.example.gone"}};
  const ReceiptSnapshot after{{"com.example.b", "com.example.z", "com.example.B", "com.example.a"}};
  EXPECT_EQ(ReceiptScanner::added(before, after), (List{"com.example.B", "com.example.a", "com.example.z"}));
  EXPECT_EQ(ReceiptScanner::added(after, after), List{});
}

}  // namespace
}  // namespace quarn
