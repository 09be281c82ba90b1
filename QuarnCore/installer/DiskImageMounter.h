#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// A disk image that has been attached. The order of the lists is that of `hdiutil`, which is none: an image
/// can have several volumes and, in APFS, the devices of two disks, and any of them can come first.
struct DiskImageMount {
  std::string imagePath;
  std::vector<Path> mountPoints;
  std::vector<std::string> devicePaths;
  bool operator==(const DiskImageMount&) const = default;
};

/// Attaches and detaches disk images with `hdiutil`, read-only and out of the Finder's sight. The tool has no
/// time limit.
namespace DiskImageMounter {

/// Attaches an image; the caller detaches it. Throws what `hdiutil` wrote if it fails (domain "hdiutil", its
/// exit status as the code), and `propertyListReadCorrupt` if its answer isn't a property list.
///
/// An image with a licence is attached only after an answer on standard input, which is ours, and the
/// question isn't shown. Standard input that ends cancels the attaching, which is a failure as above. At a
/// terminal `hdiutil` waits without limit. After a "y" the licence stands before the property list, so the
/// answer can't be read and the image stays attached.
DiskImageMount attach(const ReadOnlyPlatform& platform, const Path& image);

/// Detaches an image by the first of its mount points and devices for which that
/// succeeds. Never throws.
void detach(const ReadOnlyPlatform& platform, const DiskImageMount& mount);

/// Attaches an image and detaches it at the end of the scope.
class Attached {
 public:
  /// Throws what `attach` throws.
  Attached(const ReadOnlyPlatform& platform, const Path& image)
      : platform_(platform), mount_(attach(platform, image)) {}
  ~Attached() { detach(platform_, mount_); }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;

  const std::vector<Path>& mountPoints() const { return mount_.mountPoints; }
  /// Throws `MoveRefused` if somebody else has detached it meanwhile: what isn't there any more shows
  /// no items, but isn't an empty volume.
  void requireAttached() const;

 private:
  const ReadOnlyPlatform platform_;
  const DiskImageMount mount_;
};

/// Reads what `hdiutil attach -plist` printed. A property list of another shape has no volumes and no
/// devices.
Result<DiskImageMount> parse(const Path& image, std::string_view propertyList);

}  // namespace DiskImageMounter
}  // namespace quarn
