#include "QuarnCore/installer/InstallerKind.h"

#include "Platform/Text.h"

namespace quarn {

namespace ContentKindSniffer {
namespace {

constexpr std::size_t bytesToSniff = 256;

}  // namespace

std::optional<InstallerKind> sniff(const ReadOnlyPlatform& platform, const Path& file) {
  const auto start = platform.files.readStart(file, bytesToSniff);
  const auto text = start ? Text::decodingFile(*start) : std::nullopt;
  if (!text || !text->starts_with("#!")) return std::nullopt;
  return InstallerKind::script;
}

}  // namespace ContentKindSniffer

namespace InstallerKinds {

std::optional<InstallerKind> ofExtension(const Path& source) {
  const std::string extension = Text::lowercased(source.extension());
  for (const InstallerKind kind : {InstallerKind::app, InstallerKind::dmg, InstallerKind::zip,
                                   InstallerKind::pkg, InstallerKind::mpkg}) {
    if (extension == rawValue(kind)) return kind;
  }
  for (const char* ofScripts : {"sh", "bash", "command", "zsh"}) {
    if (extension == ofScripts) return InstallerKind::script;
  }
  return std::nullopt;
}

InstallerKind detect(const ReadOnlyPlatform& platform, const Path& source) {
  if (const auto kind = ofExtension(source)) return *kind;
  return ContentKindSniffer::sniff(platform, source).value_or(InstallerKind::unknown);
}

bool isSpecial(const ReadOnlyPlatform& platform, const Path& source) {
  const auto found = platform.files.attributes(platform.files.resolvingLinks(source));
  if (!found) return false;
  const FileKind kind = found->kind;
  return kind != FileKind::regular && kind != FileKind::folder && kind != FileKind::symbolicLink;
}

}  // namespace InstallerKinds
}  // namespace quarn
