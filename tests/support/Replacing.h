#pragma once

#include "Platform/HostPlatform.h"
#include "Platform/LocalizedError.h"

namespace quarn {

/// The parts of a platform that a test answers for.
struct Replacement {
  FileSystem* files = nullptr;
  Processes* processes = nullptr;
  Volumes* volumes = nullptr;
  Applications* applications = nullptr;
  Trash* trash = nullptr;
  Clock* clock = nullptr;
  Places* places = nullptr;
  Locks* locks = nullptr;
  Databases* databases = nullptr;
  FileEvents* events = nullptr;
};

/// `platform` with those parts in place of its own.
inline Platform replacing(const Replacement& part, const Platform& platform = hostPlatform()) {
  return {.files = part.files ? *part.files : platform.files,
          .processes = part.processes ? *part.processes : platform.processes,
          .volumes = part.volumes ? *part.volumes : platform.volumes,
          .applications = part.applications ? *part.applications : platform.applications,
          .trash = part.trash ? *part.trash : platform.trash,
          .clock = part.clock ? *part.clock : platform.clock,
          .places = part.places ? *part.places : platform.places,
          .locks = part.locks ? *part.locks : platform.locks,
          .databases = part.databases ? *part.databases : platform.databases,
          .events = part.events ? *part.events : platform.events};
}

/// What a person would be told; "nothing" if nothing was thrown.
template <class Body>
std::string thrown(const Body& body) {
  try {
    body();
  } catch (const LocalizedError& error) {
    return error.localizedDescription();
  }
  return "nothing";
}

}  // namespace quarn
