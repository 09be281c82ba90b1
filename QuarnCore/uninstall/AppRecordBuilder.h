#pragma once

#include "Platform/Platform.h"
#include "QuarnCore/uninstall/AppRecord.h"

namespace quarn::AppRecordBuilder {

/// Describes what is at a path. What can't be read is absent; without a property list the record is named
/// after the folder.
AppRecord build(const ReadOnlyPlatform& platform, const Path& bundle);

}  // namespace quarn::AppRecordBuilder
