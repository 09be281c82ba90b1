#pragma once

#include <functional>
#include <string>

/// Expectations that need a process of their own: one with fewer rights, one with other limits.
/// Each gives what failed in that process as text, empty if nothing did.
namespace child {

std::string failures(const std::function<void()>& body);

/// Permissions bind the body, also when the tests run as root.
std::string failuresWithoutRights(const std::function<void()>& body);
/// Lets permissions bind the calling process from now on. For a child that does nothing else.
bool dropRights();

/// Whether the body gives true in a process of its own.
bool succeeds(const std::function<bool()>& body);

}  // namespace child
