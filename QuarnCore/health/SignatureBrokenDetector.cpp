#include "QuarnCore/health/SignatureBrokenDetector.h"

#include "Platform/Text.h"
#include "QuarnCore/trust/CodesignVerifier.h"

namespace quarn::SignatureBrokenDetector {
namespace {

std::string firstLine(const std::string& text) {
  const auto lines = Text::nonEmptyLinesOfAnyEnd(text);
  return lines.empty() ? std::string() : std::string(lines.front());
}

/// Begins the same way whichever tool has something to say.
std::string detailOf(const CodesignVerifier::Result& result) {
  std::string detail = "codesign verify failed.";
  if (!result.codesignOK && !result.codesignDetail.empty()) detail += " " + firstLine(result.codesignDetail);
  if (!result.staplerOK.value_or(true) && !result.staplerDetail.empty()) {
    detail += " stapler: " + firstLine(result.staplerDetail);
  }
  return detail;
}

}  // namespace

std::vector<HealthIssue> detect(const ReadOnlyPlatform& platform,
                                const std::vector<ApplicationsRootScan::Symlink>& symlinks) {
  std::vector<HealthIssue> issues;
  for (const auto& [location, target] : symlinks) {
    if (target.extension() != "app" || !platform.files.exists(target)) continue;
    const CodesignVerifier::Result result = CodesignVerifier::verify(platform, target);
    if (!result.isSigned || result.passed()) continue;
    issues.push_back({.kind = HealthIssue::Kind::signatureBroken,
                      .location = location,
                      .target = target,
                      .detail = detailOf(result),
                      .sizeBytes = 0});
  }
  return issues;
}

}  // namespace quarn::SignatureBrokenDetector
