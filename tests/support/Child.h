#pragma once

#include <functional>
#include <string>

/// Expectations that need a process of their own: one with fewer rights, one with mounts of its own.
/// Each gives what failed in that process as text, empty if nothing did.
namespace child {

std::string failures(const std::function<void()>& body);

/// Permissions bind the body, also when the tests run as root.
std::string failuresWithoutRights(const std::function<void()>& body);
/// Lets permissions bind the calling process from now on. For a child that does nothing else.
bool dropRights();

/// A system call of that number fails in the body with that error, as on a system that doesn't know it.
/// Only where `canRefuseCalls()`.
std::string failuresRefusing(long call, int error, const std::function<void()>& body);
bool canRefuseCalls();

/// What the body mounts is seen by it alone. Only where `canMount()`.
std::string failuresWithOwnMounts(const std::function<void()>& body);
bool canMount();
/// Mounts an empty memory file system on a folder; `options` such as "size=1m".
bool mountMemory(const std::string& folder, const std::string& options);
bool makeReadOnly(const std::string& folder);

}  // namespace child
