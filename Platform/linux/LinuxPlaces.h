#pragma once

#include "Platform/Places.h"

namespace quarn {

class LinuxPlaces : public Places {
 public:
  Path home() const override;
  std::optional<Path> home(const std::string& user) const override;
  Path currentFolder() const override;
  Path executable() const override;
};

}  // namespace quarn
