#pragma once

namespace quarn::room::Rights {

/// From the next exec on this process has, even as root, no right that an ordinary user of a Mac lacks, but
/// for the right to mount, which `plug` and `unplug` need. Where the host does not let go of a right it
/// stays.
void becomeOrdinary();

}  // namespace quarn::room::Rights
