#pragma once

#include <functional>
#include <string>

namespace child {

/// A system call of that number fails in the body with that error, as on a system that doesn't know it.
/// Only where `canRefuseCalls()`. Gives what failed in the body, as `failures` does.
std::string failuresRefusing(long call, int error, const std::function<void()>& body);
bool canRefuseCalls();

}  // namespace child
