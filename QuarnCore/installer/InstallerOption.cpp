#include "QuarnCore/installer/InstallerOption.h"

#include "TOMLDecoder/TOMLDecoder.h"

namespace quarn {
namespace {

std::vector<InstallerKind> kinds(const toml::KeyedDecodingContainer& keyed, const char* key) {
  std::vector<InstallerKind> found;
  for (const std::string& text : keyed.decode<std::vector<std::string>>(key)) {
    const auto kind = InstallerKinds::fromRawValue(text);
    if (!kind)
      throw toml::TOMLError({.kind = toml::TOMLError::Reason::Kind::typeMismatchInTable,
                             .key = key,
                             .expected = "kind of source"});
    found.push_back(*kind);
  }
  return found;
}

}  // namespace

InstallerOption InstallerOption::decode(const toml::Decoding& from) {
  const auto keyed = from.keyed();
  return {.id = keyed.decode<std::string>("id"),
          .label = keyed.decode<std::string>("label"),
          .strategy = keyed.decode<std::string>("strategy"),
          .sourceKinds = kinds(keyed, "sourceKinds"),
          .allowUntrustedPackages = keyed.decode<bool>("allowUntrustedPackages"),
          .allowUntrustedScripts = keyed.decodeIfPresent<bool>("allowUntrustedScripts").value_or(false),
          .externalRootName = keyed.decode<std::string>("externalRootName"),
          .applicationLinkRoot = keyed.decode<std::string>("applicationLinkRoot"),
          .track = keyed.decode<bool>("track"),
          .relocateSafeApps = keyed.decode<bool>("relocateSafeApps")};
}

}  // namespace quarn
