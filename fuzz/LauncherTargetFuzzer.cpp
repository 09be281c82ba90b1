/// Whatever a target file holds, what is taken from it is a trimmed text, and the launcher opens an absolute
/// path or nothing.
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "ExternalAppLauncher/Launcher.h"
#include "Platform/HostPlatform.h"
#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCore/discovery/LauncherShim.h"

namespace {

using namespace quarn;

void expect(bool holds) {
  if (!holds) std::abort();
}

std::optional<std::string> openedTarget(std::string_view bytes) {
  try {
    return Launcher::targetIn(bytes, "Foo");
  } catch (const Launcher::Complaint& complaint) {
    expect(complaint.sentence.starts_with("The launcher “Foo” is damaged: "));
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto recorded = LauncherShim::targetText(bytes);
  expect(recorded.has_value() == Text::isUTF8(bytes));
  if (recorded) {
    expect(Text::isUTF8(*recorded));
    expect(Text::trimmingWhitespaceAndNewlines(*recorded) == *recorded);
    expect(PathText::fileURL(hostPlatform().places, *recorded).isAbsolute());
  }
  if (const auto opened = openedTarget(bytes)) {
    expect(opened->starts_with('/') && opened->find('\0') == std::string::npos);
    // The launcher opens what the health check looks for.
    expect(opened == recorded);
  }
  const std::string bundle = Launcher::bundleAround(std::string(bytes));
  expect(bundle.empty() || (bundle.ends_with(".app") && bytes.starts_with(bundle)));
  return 0;
}
