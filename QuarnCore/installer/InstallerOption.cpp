#include "QuarnCore/installer/InstallerOption.h"

#include "TOMLDecoder/TOMLDecoder.h"

template <>
struct toml::DecodingOf<quarn::InstallerKind> {
  static quarn::InstallerKind decode(const toml::Decoding& from) {
    const auto word = from.decode<std::string>();
    if (const auto kind = quarn::fromRawValue<quarn::InstallerKind>(word)) return *kind;
    from.fail("'" + word + "' is not a kind of source");
  }
};

namespace quarn {

InstallerOption InstallerOption::decode(const toml::Decoding& from) {
  const auto keyed = from.keyed();
  return {.id = keyed.decode<std::string>("id"),
          .label = keyed.decode<std::string>("label"),
          .strategy = keyed.decode<std::string>("strategy"),
          .sourceKinds = keyed.decode<std::vector<InstallerKind>>("sourceKinds"),
          .allowUntrustedPackages = keyed.decode<bool>("allowUntrustedPackages"),
          .allowUntrustedScripts = keyed.decodeIfPresent<bool>("allowUntrustedScripts").value_or(false),
          .externalRootName = keyed.decode<std::string>("externalRootName"),
          .applicationLinkRoot = keyed.decode<std::string>("applicationLinkRoot"),
          .track = keyed.decode<bool>("track"),
          .relocateSafeApps = keyed.decode<bool>("relocateSafeApps")};
}

}  // namespace quarn
