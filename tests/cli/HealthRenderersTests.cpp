#include <gtest/gtest.h>

#include "Platform/DateText.h"
#include "QuarnCLI/health/HealthRenderers.h"

namespace quarn {
namespace {

using Kind = HealthIssue::Kind;

template <class Print>
std::string printed(Print print) {
  testing::internal::CaptureStdout();
  print();
  std::fflush(stdout);
  return testing::internal::GetCapturedStdout();
}

HealthIssue issue(Kind kind, const std::string& location, std::int64_t bytes = 0,
                  std::optional<std::string> target = {}, const std::string& detail = "") {
  return {kind, Path(location), target ? std::optional(Path(*target)) : std::nullopt, detail, bytes};
}

HealthReport reportOf(std::vector<HealthIssue> issues) {
  HealthReport report;
  report.issues = std::move(issues);
  report.scannedAt = *DateText::parsingISO8601("2026-01-31T09:05:00Z");
  return report;
}

HealthReport oneOfEach() {
  std::vector<HealthIssue> issues;
  for (const Kind kind : allCases<Kind>()) {
    issues.push_back(
        issue(kind, "/Applications/" + std::string(rawValue(kind)) + ".app", 0, std::nullopt, "Why."));
  }
  HealthReport report = reportOf(issues);
  report.healthyCount = 1;
  report.scannedSymlinks = 7;
  report.scannedDrives = {Path("/Volumes/X9/ExternalQuarn/Apps"),
                          Path("/Volumes/Y \"2\"/ExternalQuarn/Apps")};
  return report;
}

TEST(HealthHumanRenderer, theSummaryCountsAndNamesTheRoots) {
  EXPECT_EQ(printed([] { HealthHumanRenderer::printSummary(oneOfEach()); }),
            "Scanned 7 symlinked apps across 2 external root(s).\n"
            "Healthy: 1   Problems: 11\n"
            "External roots:\n"
            "  • /Volumes/X9/ExternalQuarn/Apps\n"
            "  • /Volumes/Y \"2\"/ExternalQuarn/Apps\n"
            "\n");
}

TEST(HealthHumanRenderer, nothingFoundIsASummaryAlone) {
  const HealthReport nothing = reportOf({});
  EXPECT_EQ(printed([&] { HealthHumanRenderer::printSummary(nothing); }),
            "Scanned 0 symlinked apps across 0 external root(s).\nHealthy: 0   Problems: 0\n\n");
  EXPECT_EQ(printed([&] { HealthHumanRenderer::printIssues(nothing); }), "");
}

TEST(HealthHumanRenderer, theSectionsHaveAnOrderOfTheirOwnAndLeaveTwoKindsOut) {
  const std::string text = printed([] { HealthHumanRenderer::printIssues(oneOfEach()); });
  std::string expected;
  for (const char* kind :
       {"dangling", "empty", "corrupted", "brokenLauncher", "signatureBroken", "unsafePrefsPlist", "reverted",
        "orphan", "missingTrackedFiles", "missingSpotlightLaunchers"}) {
    std::string heading(kind);
    for (char& letter : heading) letter = static_cast<char>(std::toupper(letter));
    expected += "== " + heading + " (1) ==\n  /Applications/" + kind + ".app\n    Why.\n\n";
  }
  EXPECT_EQ(text, expected);
}

TEST(HealthHumanRenderer, anIssueShowsOnlyWhatItHas) {
  const HealthReport report = reportOf({
      issue(Kind::orphan, "/Volumes/X9/A.app", 1, std::nullopt, "Why."),
      issue(Kind::orphan, "/Volumes/X9/B.app", 0, "/there"),
      issue(Kind::orphan, "/Volumes/X9/C.app", -1, "/there", "a\tb"),
  });
  EXPECT_EQ(printed([&] { HealthHumanRenderer::printIssues(report); }),
            "== ORPHAN (3) ==\n"
            "  /Volumes/X9/A.app  [0 KB]\n"
            "    Why.\n"
            "  /Volumes/X9/B.app\n"
            "    → /there\n"
            "  /Volumes/X9/C.app\n"
            "    → /there\n"
            "    a\tb\n"
            "\n");
}

TEST(HealthHumanRenderer, theAnalysisAddsUpByKind) {
  const HealthReport report = reportOf({
      issue(Kind::healthy, "/Applications/Small.app", 1'000'000),
      issue(Kind::healthy, "/Applications/Large.app", 3'000'000'000),
      issue(Kind::healthy, "/Applications/Equal.app", 1'000'000),
      issue(Kind::orphan, "/Volumes/X9/Orphan.app", 2'000'000),
      issue(Kind::reverted, "/Applications/Back.app", 5'000'000),
      issue(Kind::reverted, "/Applications/Again.app", 1'000'000),
      issue(Kind::empty, "/Applications/Empty.app", 9'000'000),
  });
  EXPECT_EQ(printed([&] { HealthHumanRenderer::printAnalysis(report); }),
            "== ANALYSIS ==\n"
            "Total SSD bytes (healthy + orphan): 3 GB\n"
            "\n"
            "Top 10 largest healthy symlinked apps:\n"
            "  3 GB       Large.app\n"
            "  1 MB       Small.app\n"
            "  1 MB       Equal.app\n"
            "\n"
            "Reclaimable from orphans: 2 MB\n"
            "Reclaimable from reverted-app stale SSD copies: 6 MB\n");
}

TEST(HealthHumanRenderer, theAnalysisOfNothingHasNoSums) {
  EXPECT_EQ(printed([] { HealthHumanRenderer::printAnalysis(reportOf({})); }),
            "== ANALYSIS ==\nTotal SSD bytes (healthy + orphan): Zero KB\n\n"
            "Top 10 largest healthy symlinked apps:\n");
}

TEST(HealthHumanRenderer, tenAreShownAndALongSizeIsCut) {
  std::vector<HealthIssue> issues;
  for (int i = 0; i < 11; ++i)
    issues.push_back(
        issue(Kind::healthy, "/Applications/" + std::to_string(i) + ".app", 1'234'567'890'000'000 - i));
  const std::string text = printed([&] { HealthHumanRenderer::printAnalysis(reportOf(issues)); });
  EXPECT_NE(text.find("\n  1,234,567. 0.app\n"), std::string::npos) << text;
  EXPECT_NE(text.find(" 9.app\n"), std::string::npos) << text;
  EXPECT_EQ(text.find(" 10.app"), std::string::npos) << text;
}

TEST(HealthTSVRenderer, everyFindingHasALine) {
  const HealthReport report = reportOf({
      issue(Kind::healthy, "/Applications/A.app", 12, "/Volumes/X9/A.app"),
      issue(Kind::orphan, "/Volumes/X9/B\tC.app", 30, std::nullopt, "one\ttwo"),
  });
  EXPECT_EQ(printed([&] { HealthTSVRenderer::print(report, false); }),
            "kind\tlocation\ttarget\tsize_bytes\tdetail\n"
            "healthy\t/Applications/A.app\t/Volumes/X9/A.app\t12\t\n"
            "orphan\t/Volumes/X9/B\tC.app\t\t30\tone two\n");
}

TEST(HealthTSVRenderer, theSumsAreSortedByName) {
  const HealthReport report = reportOf({
      issue(Kind::unsafePrefsPlist, "/a"),
      issue(Kind::orphan, "/b", 1),
      issue(Kind::healthy, "/c", 2),
      issue(Kind::orphan, "/d", 3),
  });
  const std::string text = printed([&] { HealthTSVRenderer::print(report, true); });
  EXPECT_EQ(text.substr(text.find("\n\n")),
            "\n\nmetric\tbytes\nhealthy\t2\norphan\t4\nunsafePrefsPlist\t0\n");
}

TEST(HealthTSVRenderer, nothingFoundIsTheHeader) {
  EXPECT_EQ(printed([] { HealthTSVRenderer::print(reportOf({}), false); }),
            "kind\tlocation\ttarget\tsize_bytes\tdetail\n");
  EXPECT_EQ(printed([] { HealthTSVRenderer::print(reportOf({}), true); }),
            "kind\tlocation\ttarget\tsize_bytes\tdetail\n\nmetric\tbytes\n");
}

TEST(HealthTOMLRenderer, healthyOnesAreCountedAndNotListed) {
  HealthReport report = reportOf({
      issue(Kind::healthy, "/Applications/A.app", 12, "/Volumes/X9/A.app"),
      issue(Kind::dangling, "/Applications/B\"\\\n.app", 0, "/Volumes/X9/B\t.app", "tab\there"),
      issue(Kind::orphan, "/Volumes/X9/C.app", 7, std::nullopt, "Why."),
  });
  report.healthyCount = 1;
  report.scannedSymlinks = 2;
  report.scannedDrives = {Path("/Volumes/X9"), Path("/Volumes/\"Y\"")};
  EXPECT_EQ(printed([&] { HealthTOMLRenderer::print(report, true); }),
            "[summary]\n"
            "scanned_at        = \"2026-01-31T09:05:00Z\"\n"
            "scanned_symlinks  = 2\n"
            "healthy           = 1\n"
            "problems          = 2\n"
            "scanned_drives    = [\"/Volumes/X9\", \"/Volumes/\\\"Y\\\"\"]\n"
            "\n"
            "[[issue]]\n"
            "kind       = \"dangling\"\n"
            "location   = \"/Applications/B\\\"\\\\\\n.app\"\n"
            "target     = \"/Volumes/X9/B\t.app\"\n"
            "size_bytes = 0\n"
            "detail     = \"tab\there\"\n"
            "\n"
            "[[issue]]\n"
            "kind       = \"orphan\"\n"
            "location   = \"/Volumes/X9/C.app\"\n"
            "size_bytes = 7\n"
            "detail     = \"Why.\"\n"
            "\n"
            "[totals_by_kind_bytes]\n"
            "dangling = 0\n"
            "healthy = 12\n"
            "orphan = 7\n");
}

TEST(HealthTOMLRenderer, nothingFoundIsTheSummary) {
  const std::string summary =
      "[summary]\n"
      "scanned_at        = \"2026-01-31T09:05:00Z\"\n"
      "scanned_symlinks  = 0\n"
      "healthy           = 0\n"
      "problems          = 0\n"
      "scanned_drives    = []\n"
      "\n";
  EXPECT_EQ(printed([] { HealthTOMLRenderer::print(reportOf({}), false); }), summary);
  EXPECT_EQ(printed([] { HealthTOMLRenderer::print(reportOf({}), true); }),
            summary + "[totals_by_kind_bytes]\n");
}

}  // namespace
}  // namespace quarn
