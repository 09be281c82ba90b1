#pragma once

namespace quarn::room::Rights {

/// From the next exec on this process has, even as root, no right that an ordinary user of a Mac lacks, but
/// for the right to mount, which `plug` and `unplug` need. Where the host does not let go of a right it
/// stays.
void becomeOrdinary();

/// From now on, and in all descendants, the system calls that an old proot passes on with paths of the room
/// left as they are answer "not known to this system"; libraries and tools then use the older calls that it
/// does translate. Nothing changes where the kernel cannot filter calls.
void hideCallsUnknownToTracers();

}  // namespace quarn::room::Rights
