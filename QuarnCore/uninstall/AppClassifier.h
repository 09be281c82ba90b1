#pragma once

#include <optional>
#include <string>

#include "Platform/Platform.h"
#include "QuarnCore/discovery/InfoPlist.h"
#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn {

/// What kind of installation a bundle is.
struct AppClassification {
  AppRecordKind kind = AppRecordKind::normal;
  bool isLauncher = false;
  std::optional<std::string> externalTarget = {};  ///< where a link or a launcher says that it leads
  bool operator==(const AppClassification&) const = default;
};

namespace AppClassifier {
/// Judges a bundle by its path, by whether it is a link (`symlinkTarget` is the text in it), and by what is
/// in it; `texts` are those of its property list. What can't be read counts as absent.
AppClassification classify(const ReadOnlyPlatform& platform, const Path& bundle,
                           const InfoPlist::Texts& texts, const std::optional<std::string>& symlinkTarget);

/// Returns what a property list says of the makers: its first text about them, without the word "Copyright"
/// and the sign "©", cut to 80 characters. It can be empty. Nothing if there is no such text.
std::optional<std::string> developer(const InfoPlist::Texts& texts);
}  // namespace AppClassifier

}  // namespace quarn
