/// Whatever `hdiutil` prints, what is read of it are the texts of a property list, or it isn't one.
#include <cstdint>
#include <cstdlib>

#include "Platform/PropertyList.h"
#include "Platform/Text.h"
#include "QuarnCore/installer/DiskImageMounter.h"

namespace {

void expect(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto mount = quarn::DiskImageMounter::parse(quarn::Path("/Foo.dmg"), bytes);
  expect(mount.succeeded() == quarn::PropertyList::parse(bytes).has_value());
  if (!mount) return 0;
  expect(mount->imagePath == "/Foo.dmg");
  for (const auto& mountPoint : mount->mountPoints) expect(quarn::Text::isUTF8(mountPoint.text()));
  for (const std::string& device : mount->devicePaths) expect(quarn::Text::isUTF8(device));
  return 0;
}
