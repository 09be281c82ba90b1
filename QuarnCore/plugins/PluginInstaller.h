#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "QuarnCore/foundation/RawValues.h"
#include "QuarnCore/plugins/PluginBundle.h"

namespace quarn {

/// What became of one plug-in.
struct PluginInstallReport {
  enum class Outcome { installed, skipped, failed };

  PluginBundle bundle;
  Outcome outcome = Outcome::failed;
  std::optional<std::string> destinationPath;  ///< on the drive
  std::optional<std::string> symlinkPath;      ///< in the system
  std::string message;

  bool operator==(const PluginInstallReport&) const = default;
};

template <>
inline constexpr auto rawValueRows<PluginInstallReport::Outcome> =
    std::to_array<RawValueRow<PluginInstallReport::Outcome>>({
        {PluginInstallReport::Outcome::installed, "installed"},
        {PluginInstallReport::Outcome::skipped, "skipped"},
        {PluginInstallReport::Outcome::failed, "failed"},
    });

/// What became of several plug-ins, in their order.
struct PluginInstallBatch {
  std::string drive;  ///< its path
  std::vector<PluginInstallReport> reports;

  std::size_t installed() const { return count(PluginInstallReport::Outcome::installed); }
  std::size_t skipped() const { return count(PluginInstallReport::Outcome::skipped); }
  std::size_t failed() const { return count(PluginInstallReport::Outcome::failed); }

  bool operator==(const PluginInstallBatch&) const = default;

 private:
  std::size_t count(PluginInstallReport::Outcome outcome) const;
};

/// Copies plug-ins to a drive and links them to where hosts look for them.
namespace PluginInstaller {

struct Options {
  bool dryRun = false;  ///< only tells where each plug-in would be copied to
  bool overwrite = false;
  bool stripQuarantine = false;  ///< clears extended attributes of the copy, and of what links in it lead to
  bool adhocCodesign = false;    ///< copying can invalidate a signature, and hosts refuse such a plug-in
};

using Log = std::function<void(const std::string& line)>;

/// Installs one plug-in after another. What fails is reported, and the next one is tried; never throws.
///
/// What stands where hosts look, be it a real bundle, is removed and replaced by the link, but not before the
/// copy has been written out and compared, and is still on the drive. With `overwrite`, a copy that is on the
/// drive already is removed before the new one is made, but not before the source has been read; without, the
/// plug-in is passed over, and the link isn't looked at. What `PluginOnlyCopy` keeps stays. A failure later
/// on leaves the copy where it is. In the end all is written out. Whoever calls this has the `Turn`.
PluginInstallBatch install(Platform& platform, const std::vector<PluginBundle>& bundles, const Path& drive,
                           const Options& options, const Log& log);

}  // namespace PluginInstaller
}  // namespace quarn
