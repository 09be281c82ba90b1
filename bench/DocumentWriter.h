#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "bench/ReadingPlan.h"

namespace bench {

/// A document as text, and what stands in it.
struct Document {
  std::string text;
  ReadingPlan plan;
};

/// Writes a document and its plan side by side. Plans nest, texts needn't: a header is one line, and what it
/// opens ends with `close`.
class DocumentWriter {
 public:
  /// Anything that holds no value, a comment or a blank line.
  void line(std::string_view text);
  /// `key = token`
  void value(std::string_view key, Holds holds, std::string_view token);
  /// The same, where the key isn't written as it reads: quoted, or behind a dot.
  void value(std::string_view written, std::string_view key, Holds holds, std::string_view token);

  /// For what is in tables and arrays written on one line: the plan alone.
  void plan(Holds holds, Where where) { document_.plan.add(holds, where); }
  void open(Holds holds, Where where) { document_.plan.open(holds, where); }
  void close(std::size_t levels = 1);

  std::size_t size() const { return document_.text.size(); }
  Document finish() { return std::move(document_); }

 private:
  Document document_;
};

}  // namespace bench
