#pragma once

namespace quarn::room::Rights {

/// From the next exec on this process has, even as root, no right that an ordinary user of a Mac lacks,
/// except the right to mount, which `plug` and `unplug` need. A right that the host does not allow to drop
/// stays.
void becomeOrdinary();

/// An old proot does not translate the paths of newer system calls. From now on, here and in all descendants,
/// these calls fail with ENOSYS, so that libraries and tools use the older calls, which it does translate.
/// Nothing changes where the kernel cannot filter calls.
void hideCallsUnknownToTracers();

}  // namespace quarn::room::Rights
