#pragma once

#include "QuarnCore/foundation/TemporaryFolders.h"

namespace quarn::ZipExpander {

/// Expands an archive into a new folder "QuarnZip-<UUID>" in the temporary folder and returns that folder.
/// The caller has it set aside when done. `ditto` does the work, without a limit of time or size; a
/// full volume makes it fail.
///
/// Throws what `ditto` wrote if it fails (domain "zip", its exit status as the code), even for one entry of
/// many, and an error of the same domain with code 1 if anything lies outside the folder. In both cases what
/// has been expanded is set aside. Links are kept, and one that leads out of the folder isn't refused: what
/// reads the folder mustn't follow links.
Path expand(const ReadOnlyPlatform& platform, TemporaryFolders& temporaryFolders, const Path& archive);

}  // namespace quarn::ZipExpander
