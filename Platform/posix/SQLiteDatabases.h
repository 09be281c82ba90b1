#pragma once

#include "Platform/Databases.h"

namespace quarn {

class SQLiteDatabases : public Databases {
 public:
  std::unique_ptr<Database> openForReading(const Path& file) const override;
  std::unique_ptr<Database> openForWriting(const Path& file) override;
};

}  // namespace quarn
