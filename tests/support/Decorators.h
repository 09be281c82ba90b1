#pragma once

#include <signal.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "Platform/FileSystem.h"

namespace quarn {

/// Forwards everything. Each changing operation first passes `before`, which may fail it.
class FileSystemDecorator : public FileSystem {
 public:
  explicit FileSystemDecorator(FileSystem& inner) : inner_(inner) {}

  bool exists(const Path& path) const override { return inner_.exists(path); }
  bool isDirectory(const Path& path) const override { return inner_.isDirectory(path); }
  Result<FileAttributes> attributes(const Path& path) const override { return inner_.attributes(path); }
  Result<std::string> readLink(const Path& path) const override { return inner_.readLink(path); }
  Path resolvingLinks(const Path& path) const override { return inner_.resolvingLinks(path); }
  Path standardized(const Path& path) const override { return inner_.standardized(path); }
  Result<std::vector<std::string>> list(const Path& folder, Hidden hidden) const override {
    return inner_.list(folder, hidden);
  }
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    inner_.walk(root, hidden, visitor);
  }
  Result<std::string> read(const Path& file) const override { return inner_.read(file); }

  Result<void> createFolder(const Path& folder) override {
    if (auto refusal = before("createFolder " + folder.text()); !refusal) return refusal;
    return inner_.createFolder(folder);
  }
  Result<void> createLink(const Path& link, const std::string& target) override {
    if (auto refusal = before("createLink " + link.text() + " -> " + target); !refusal) return refusal;
    return inner_.createLink(link, target);
  }
  Result<void> remove(const Path& item) override {
    if (auto refusal = before("remove " + item.text()); !refusal) return refusal;
    return inner_.remove(item);
  }
  Result<void> move(const Path& source, const Path& destination) override {
    if (auto refusal = before("move " + source.text() + " -> " + destination.text()); !refusal)
      return refusal;
    return inner_.move(source, destination);
  }
  Result<void> writeAtomically(const Path& file, std::string_view content) override {
    if (auto refusal = before("writeAtomically " + file.text()); !refusal) return refusal;
    return inner_.writeAtomically(file, content);
  }
  Result<void> flush(const Path& item) override {
    if (auto refusal = before("flush " + item.text()); !refusal) return refusal;
    return inner_.flush(item);
  }

 protected:
  virtual Result<void> before(const std::string& /*operation*/) { return {}; }

 private:
  FileSystem& inner_;
};

/// Fails the n-th changing operation (the first is 1), which then changes nothing.
class FailNth : public FileSystemDecorator {
 public:
  FailNth(FileSystem& inner, int n, PlatformError error)
      : FileSystemDecorator(inner), countdown_(n), error_(std::move(error)) {}
  /// Whether the operation came.
  bool fired() const { return countdown_ <= 0; }

 protected:
  Result<void> before(const std::string&) override {
    if (--countdown_ == 0) return error_;
    return {};
  }

 private:
  int countdown_;
  PlatformError error_;
};

/// Kills the own process before the n-th changing operation; for a process made for it.
class KillAtNth : public FileSystemDecorator {
 public:
  KillAtNth(FileSystem& inner, int n) : FileSystemDecorator(inner), countdown_(n) {}

 protected:
  Result<void> before(const std::string&) override {
    if (--countdown_ == 0) ::kill(::getpid(), SIGKILL);
    return {};
  }

 private:
  int countdown_;
};

/// Keeps the changing operations as lines of text, in their order.
class Recording : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  const std::vector<std::string>& operations() const { return operations_; }

 protected:
  Result<void> before(const std::string& operation) override {
    operations_.push_back(operation);
    return {};
  }

 private:
  std::vector<std::string> operations_;
};

}  // namespace quarn
