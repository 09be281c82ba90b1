#include "QuarnCore/trust/CodesignVerifier.h"

#include "Platform/Text.h"
#include "QuarnCore/foundation/CommandRunner.h"

namespace quarn::CodesignVerifier {
namespace {

constexpr const char* codesign = "/usr/bin/codesign";
constexpr const char* xcrun = "/usr/bin/xcrun";
constexpr double timeLimit = 20;

bool isCodeSigned(const ReadOnlyPlatform& platform, const Path& bundle) {
  return CommandRunner::run(platform, codesign, {"-dv", bundle.text()}, timeLimit).succeeded();
}

std::string detailOf(const CommandResult& result) {
  return Text::trimmingWhitespaceAndNewlines(result.standardError + result.standardOutput);
}

/// Returns whether `stapler` named the bundle and said nothing about it, as it does for what can't carry a
/// ticket. `detail` is trimmed, so a line of spaces would have others around it.
bool isOnlyProcessingLine(const std::string& detail) {
  const auto lines = Text::nonEmptyLinesOfAnyEnd(detail);
  return lines.size() == 1 && lines.front().starts_with("Processing:");
}

bool saysThereIsNoTicket(const std::string& detail) {
  return detail.find("does not have a ticket") != std::string::npos ||
         detail.find("does not contain") != std::string::npos;
}

std::optional<bool> ticketIsValid(const CommandResult& stapler, const std::string& detail) {
  if (saysThereIsNoTicket(detail)) return std::nullopt;
  if (stapler.status != 0 && isOnlyProcessingLine(detail)) return std::nullopt;
  return stapler.status == 0;
}

/// Not a broken signature: a huge bundle or a slow network takes longer, too.
Result notExamined() {
  return {.isSigned = false,
          .codesignOK = true,
          .staplerOK = std::nullopt,
          .codesignDetail = "verification timed out",
          .staplerDetail = ""};
}

}  // namespace

Result verify(const ReadOnlyPlatform& platform, const Path& bundle) {
  const bool isSigned = isCodeSigned(platform, bundle);
  const CommandResult signature =
      CommandRunner::run(platform, codesign, {"--verify", "--deep", "--strict", bundle.text()}, timeLimit);
  const CommandResult ticket =
      CommandRunner::run(platform, xcrun, {"stapler", "validate", bundle.text()}, timeLimit);
  if (signature.timedOut || ticket.timedOut) return notExamined();

  const std::string staplerDetail = detailOf(ticket);
  return {.isSigned = isSigned,
          .codesignOK = signature.status == 0,
          .staplerOK = ticketIsValid(ticket, staplerDetail),
          .codesignDetail = detailOf(signature),
          .staplerDetail = staplerDetail};
}

}  // namespace quarn::CodesignVerifier
