#include "QuarnCore/uninstall/ExternalTarget.h"

#include "Platform/PathText.h"

namespace quarn {

std::optional<Path> ExternalTarget::of(const AppRecord& record) {
  const auto& text = record.externalTargetPath;
  if (!text || text->empty()) return std::nullopt;
  const Path target(*text);
  if (target.isAbsolute()) return target;
  if (!record.isSymlink) return std::nullopt;
  return PathText::linkTarget(Path(record.bundlePath), *text).simplified();
}

}  // namespace quarn
