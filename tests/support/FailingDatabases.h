#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Platform/Databases.h"

namespace quarn {

/// Databases of which the n-th call (the first is 1) of those that can fail does so: to open one, to prepare
/// a statement, to take a step. It does nothing then. With 0 none fails.
class FailingDatabases : public Databases {
 public:
  FailingDatabases(Databases& inner, int n) : inner_(inner), fault_(std::make_shared<Fault>(Fault{n})) {}

  /// Whether the call came.
  bool fired() const { return fault_->fired; }

  std::unique_ptr<Database> openForReading(const Path& file) const override {
    return fault_->isNow() ? nullptr : watched(inner_.openForReading(file));
  }
  std::unique_ptr<Database> openForWriting(const Path& file) override {
    return fault_->isNow() ? nullptr : watched(inner_.openForWriting(file));
  }

 private:
  struct Fault {
    int countdown;
    bool fired = false;
    bool isNow() {
      if (--countdown != 0) return false;
      return fired = true;
    }
  };

  class Steps : public Statement {
   public:
    Steps(std::unique_ptr<Statement> inner, std::shared_ptr<Fault> fault)
        : inner_(std::move(inner)), fault_(std::move(fault)) {}
    void bind(int parameter, const std::optional<std::string>& text) override {
      inner_->bind(parameter, text);
    }
    Step step() override { return fault_->isNow() ? Step::failed : inner_->step(); }
    std::optional<std::string> text(int column) const override { return inner_->text(column); }

   private:
    std::unique_ptr<Statement> inner_;
    std::shared_ptr<Fault> fault_;
  };

  class Statements : public Database {
   public:
    Statements(std::unique_ptr<Database> inner, std::shared_ptr<Fault> fault)
        : inner_(std::move(inner)), fault_(std::move(fault)) {}
    std::unique_ptr<Statement> prepare(const std::string& sql) override {
      if (fault_->isNow()) return nullptr;
      auto statement = inner_->prepare(sql);
      if (!statement) return nullptr;
      return std::make_unique<Steps>(std::move(statement), fault_);
    }
    int changes() const override { return inner_->changes(); }

   private:
    std::unique_ptr<Database> inner_;
    std::shared_ptr<Fault> fault_;
  };

  std::unique_ptr<Database> watched(std::unique_ptr<Database> database) const {
    if (!database) return nullptr;
    return std::make_unique<Statements>(std::move(database), fault_);
  }

  Databases& inner_;
  std::shared_ptr<Fault> fault_;
};

}  // namespace quarn
