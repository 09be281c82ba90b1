#pragma once

#include <string>

/// The mounts of this process's namespace; each throws RoomError.
namespace quarn::room::Mounts {

void mount(const std::string& type, const std::string& at, unsigned long flags, const std::string& data);

/// A memory file system.
void memory(const std::string& at, const std::string& data);

/// `from`, with everything mounted below it, also at `to`.
void bind(const std::string& from, const std::string& to);

/// With everything mounted below it.
void makeReadOnly(const std::string& path);

/// From now on no mount made here is seen outside, nor the reverse.
void cutOff();

}  // namespace quarn::room::Mounts
