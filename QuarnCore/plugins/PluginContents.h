#pragma once

#include <string>

#include "Platform/Platform.h"

/// Looks into plug-ins before one of two goes: whether it can be copied, and whether the other one is as
/// much. Only looks. All of it throws `MoveRefused`, or the error that was met.
namespace quarn::PluginContents {

/// Throws unless all that is in a bundle can be copied, be it a link to one. Copying leaves out sockets and
/// devices, and may wait for ever at a FIFO.
void requireCopyable(const ReadOnlyPlatform& platform, const Path& bundle);

/// Throws unless everything in `item` has something of its name in `other`. What a signature consists of may
/// be missing, as may what a volume without extended attributes keeps beside a file, how a window looked
/// (".DS_Store"), and what signing leaves when it is killed ("….cstemp").
void requireHoldsAll(const ReadOnlyPlatform& platform, const Path& other, const Path& item);

/// Throws if a file in `item` is only the start of the same file in its copy: a copy back that was cut off
/// leaves a folder that is no plug-in, while the whole one is on the drive.
void requireNotUnfinished(const ReadOnlyPlatform& platform, const Path& item, const Path& copy);

/// Throws if signing a whole copy spoilt it: something of the source is missing or of another kind, or a file
/// that had a content is empty. No size may differ unless the copy `isSigned` without a failure.
void requireUnspoilt(const ReadOnlyPlatform& platform, const Path& copy, const Path& source, bool isSigned);

/// Returns a path as a sentence shows it.
std::string quoted(const Path& place);

}  // namespace quarn::PluginContents
