#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "tests/cli/Expected.h"
#include "tests/support/Patterns.h"

/// What `health check` must say in each of its three forms, made from the findings alone.
namespace reports {

struct Finding {
  std::string kind;
  std::string location;
  std::optional<std::string> target;
  std::int64_t bytes = 0;
  std::string detail = {};
};

struct Report {
  int links = 0;
  std::vector<std::string> roots;
  std::vector<Finding> findings;  ///< healthy ones, too
};

using Lines = std::vector<std::string>;

/// Sorted: which of two links the disk lists first is its own affair.
inline Lines sortedLines(const std::string& text) {
  Lines lines;
  std::size_t begin = 0;
  for (auto end = text.find('\n'); end != std::string::npos; begin = end + 1, end = text.find('\n', begin))
    lines.push_back(text.substr(begin, end - begin));
  if (begin < text.size()) lines.push_back(text.substr(begin));
  std::sort(lines.begin(), lines.end());
  return lines;
}

inline long countOf(const Report& report, const std::string& kind) {
  return std::count_if(report.findings.begin(), report.findings.end(),
                       [&](const Finding& finding) { return finding.kind == kind; });
}

inline std::string human(const Report& report) {
  const auto healthy = countOf(report, "healthy");
  const auto problems = static_cast<long>(report.findings.size()) - healthy;
  std::string text = "Scanned " + std::to_string(report.links) + " symlinked apps across " +
                     std::to_string(report.roots.size()) +
                     " external root(s).\nHealthy: " + std::to_string(healthy) +
                     "   Problems: " + std::to_string(problems) + "\n";
  if (!report.roots.empty()) text += "External roots:\n";
  for (const std::string& root : report.roots) text += "  • " + root + "\n";
  text += "\n";
  std::vector<std::string> headed = {"healthy", "sandboxExternalSymlink"};
  for (const Finding& finding : report.findings) {
    if (finding.kind == "healthy" || finding.kind == "sandboxExternalSymlink") continue;
    if (std::find(headed.begin(), headed.end(), finding.kind) == headed.end()) {
      headed.push_back(finding.kind);
      std::string heading = finding.kind;
      for (char& letter : heading) letter = static_cast<char>(std::toupper(letter));
      text += "== " + heading + " (" + std::to_string(countOf(report, finding.kind)) + ") ==\n\n";
    }
    text += "  " + finding.location;
    if (finding.bytes > 0) text += "  [" + expected::size(finding.bytes) + "]";
    text += "\n";
    if (finding.target) text += "    → " + *finding.target + "\n";
    text += "    " + finding.detail + "\n";
  }
  return text;
}

inline std::string tsv(const Report& report) {
  std::string text = "kind\tlocation\ttarget\tsize_bytes\tdetail\n";
  for (const Finding& finding : report.findings) {
    text += finding.kind + "\t" + finding.location + "\t" + finding.target.value_or("") + "\t" +
            std::to_string(finding.bytes) + "\t" + finding.detail + "\n";
  }
  return text;
}

inline std::string toml(const Report& report) {
  const auto healthy = countOf(report, "healthy");
  std::string roots;
  for (const std::string& root : report.roots) roots += (roots.empty() ? "\"" : ", \"") + root + "\"";
  std::string text =
      "[summary]\nscanned_at        = \"NOW\"\nscanned_symlinks  = " + std::to_string(report.links) +
      "\nhealthy           = " + std::to_string(healthy) +
      "\nproblems          = " + std::to_string(static_cast<long>(report.findings.size()) - healthy) +
      "\nscanned_drives    = [" + roots + "]\n\n";
  for (const Finding& finding : report.findings) {
    if (finding.kind == "healthy") continue;
    text += "[[issue]]\nkind       = \"" + finding.kind + "\"\nlocation   = \"" + finding.location + "\"\n";
    if (finding.target) text += "target     = \"" + *finding.target + "\"\n";
    text += "size_bytes = " + std::to_string(finding.bytes) + "\ndetail     = \"" + finding.detail + "\"\n\n";
  }
  return text;
}

/// Runs the check in all its forms.
inline void expectReport(const Report& report) {
  const int status = countOf(report, "healthy") == static_cast<long>(report.findings.size()) ? 0 : 2;
  const auto shown = scene::quarn({"health", "check"});
  EXPECT_EQ(shown.status, status);
  EXPECT_EQ(shown.err, "");
  EXPECT_EQ(sortedLines(shown.out), sortedLines(human(report))) << shown.out;
  const auto lines = scene::quarn({"health", "check", "--format", "tsv"});
  EXPECT_EQ(lines.status, status);
  EXPECT_EQ(sortedLines(lines.out), sortedLines(tsv(report))) << lines.out;
  const auto tables = scene::quarn({"health", "check", "--format", "toml"});
  EXPECT_EQ(tables.status, status);
  const std::string now("\"[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z\"");
  EXPECT_EQ(sortedLines(patterns::replace(tables.out, now, "\"NOW\"")), sortedLines(toml(report)))
      << tables.out;
}

}  // namespace reports
