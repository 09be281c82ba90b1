#pragma once

#include <cstddef>
#include <string>

/// How many events a queue of inotify holds; 0 where that can't be told.
int inotifyQueueLimit();
/// Makes more events in a folder than a queue holds. Leaves one file, "burst".
bool overflowInotify(const std::string& folder);
/// How many watches an open queue has.
std::size_t inotifyWatches(int queue);
