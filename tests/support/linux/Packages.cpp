#include "tests/support/Packages.h"

#include <cstdint>
#include <filesystem>

#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"

namespace packages {
namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

void run(const Words& command) {
  const scene::Run made = scene::run(command);
  if (made.status != 0) scene::fail("can't make a package: " + command[0] + ": " + made.err);
}

void bsdtar(Words words) {
  words.insert(words.begin(), "/usr/bin/bsdtar");
  run(words);
}

/// The content of a folder as a payload has it: below ".", owned by root.
void packCpio(const std::string& at, const std::string& folder) {
  bsdtar({"--format", "odc", "--uid", "0", "--gid", "0", "-czf", at, "-C", folder, "."});
}

void packXar(const std::string& at, const std::string& folder, const Words& members) {
  Words words = {"--format", "xar", "-cnf", at, "-C", folder};
  words.insert(words.end(), members.begin(), members.end());
  bsdtar(words);
}

std::string packageInfo(const Component& component) {
  return head + "<pkg-info format-version=\"2\" identifier=\"" + component.identifier + "\" version=\"" +
         component.version + "\" install-location=\"" + component.installLocation +
         "\" auth=\"root\">\n    <payload numberOfFiles=\"1\" installKBytes=\"1\"/>\n" +
         component.packageInfoExtra + "\n</pkg-info>\n";
}

/// Writes the members of a component below a folder, with `prefix` before their names; these names.
Words writeMembers(const Component& component, const ScratchFolder& folder, const std::string& prefix = "") {
  Words members = {prefix + "PackageInfo"};
  folder.write(members[0], packageInfo(component));
  const auto pack = [&](const std::string& name, const std::string& content) {
    if (content.empty()) return;
    members.push_back(prefix + name);
    packCpio(folder.at(members.back()), content);
  };
  pack("Payload", component.payload);
  pack("Scripts", component.scripts);
  return members;
}

std::string reference(const Component& component) {
  return "    <pkg-ref id=\"" + component.identifier + "\" version=\"" + component.version + "\">#" +
         component.name + "</pkg-ref>\n";
}

std::string bigEndian(std::uint64_t number, int bytes) {
  std::string result;
  for (int i = bytes - 1; i >= 0; --i) result += static_cast<char>(number >> (8 * i) & 0xff);
  return result;
}

std::string littleEndian(std::size_t number) {
  return {static_cast<char>(number & 0xff), static_cast<char>(number >> 8 & 0xff)};
}

/// As RFC 1950 lays down, in one block that isn't compressed.
std::string zlibStream(const std::string& text) {
  if (text.size() > 0xffff) scene::fail("a table of contents is too long");
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char letter : text) {
    low = (low + static_cast<unsigned char>(letter)) % 65521;
    high = (high + low) % 65521;
  }
  return "\x78\x01\x01" + littleEndian(text.size()) + littleEndian(~text.size()) + text +
         bigEndian(high << 16 | low, 4);
}

}  // namespace

bool canBeMade() {
  return fs::exists("/usr/bin/bsdtar");
}

void component(const std::string& path, const Component& component) {
  const ScratchFolder folder;
  packXar(path, folder.text(), writeMembers(component, folder));
}

void product(const std::string& path, const std::vector<Component>& components,
             const std::string& distributionExtra, const std::string& title) {
  const ScratchFolder folder;
  Words members = {"Distribution"};
  std::string references;
  for (const Component& each : components) {
    members.push_back(each.name);
    const Words ofComponent = writeMembers(each, folder, each.name + "/");
    members.insert(members.end(), ofComponent.begin(), ofComponent.end());
    references += reference(each);
  }
  folder.write("Distribution", head + "<installer-gui-script minSpecVersion=\"2\">\n    <title>" + title +
                                   "</title>\n" + distributionExtra + references +
                                   "</installer-gui-script>\n");
  packXar(path, folder.text(), members);
}

void sign(const std::string& path, const std::string& kind) {
  run({"/usr/libexec/quarn-room/sign-package", path, kind});
}

std::string archiveOf(const std::string& files, const std::string& heap) {
  const std::string contents = head + "<xar><toc>" + files + "</toc></xar>\n";
  const std::string packed = zlibStream(contents);
  // The magic word, the length of this header, version 1, the two lengths of the table, and no checksum.
  return "xar!" + bigEndian(28, 2) + bigEndian(1, 2) + bigEndian(packed.size(), 8) +
         bigEndian(contents.size(), 8) + bigEndian(0, 4) + packed + heap;
}

}  // namespace packages
