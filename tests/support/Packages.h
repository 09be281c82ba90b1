#pragma once

#include <string>
#include <vector>

/// Flat packages, as the room's pkgutil, xar and installer know them, made by ordinary tools. Each function
/// throws, as `scene::fail` does, where it can't do what it says. Linux only, like the room.
namespace packages {

struct Component {
  std::string identifier = "com.example.foo";
  std::string version = "1.0";
  std::string installLocation = "/";
  std::string payload = {};  ///< a folder whose content is installed; empty for none
  std::string scripts = {};  ///< a folder with `preinstall`, `postinstall` and what they need; empty for none
  std::string packageInfoExtra = {};   ///< XML inside the element `pkg-info`
  std::string name = "Component.pkg";  ///< of its folder in a product archive
};

/// Whether packages can be made: there is a bsdtar.
bool canBeMade();

/// A package of one component.
void component(const std::string& path, const Component& component = {});

/// A product archive: a Distribution that refers to the components in this order, with `distributionExtra` as
/// further XML.
void product(const std::string& path, const std::vector<Component>& components,
             const std::string& distributionExtra = {}, const std::string& title = "A Product");

/// Signs a package in place, over any earlier signature. The kinds are those of `sign-package`, which
/// macroom/tools/README.md lists. Only in a room.
void sign(const std::string& path, const std::string& kind = "notarized");

/// The bytes of an archive with these `file` elements in its table of contents, for archives that no ordinary
/// tool makes. The content of its files is cut out of `heap`.
std::string archiveOf(const std::string& files, const std::string& heap = {});

}  // namespace packages
