#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/Strategy.h"
#include "TOMLDecoder/internal/DocumentBuilder.h"
#include "TOMLDecoder/internal/Lexer.h"
#include "TOMLDecoder/internal/TOMLDocument.h"

namespace toml {

/// Builds the lists of a document by the grammar of https://toml.io/en/v1.0.0. Nesting is kept in a list, not
/// on the stack, so that its depth is bounded by the size of the document alone. Values are not looked into:
/// a wrong number or date is no error here.
class Parser {
 public:
  /// Throws TOMLError: `invalidUTF8`, `syntax`, `badKey`, `keyExists`, `invalidCharacter`, and what is wrong
  /// with a quoted key; each with its line.
  static TOMLDocument parse(std::string source, const KeyTransform& keyTransform = {});

 private:
  Parser(TOMLDocument& document, const KeyTransform& keyTransform);

  /// An array or inline table that isn't closed yet.
  struct Open {
    Entry::Kind kind;
    std::uint32_t index;
    std::uint32_t firstElement = 0;  ///< of the pending ones, where this array's begin
    bool hasContent = false;
  };

  void parseDocument();
  void parseSelect();
  void parseTablePath();
  void parseKeyValue(std::uint32_t table, Token key);
  void parseValue(std::uint32_t table, const HashedKey& key);
  void openValue(std::uint32_t table, const HashedKey& key);
  void parseNested();
  void parseElements();
  bool isInArray() const { return !open_.empty() && open_.back().kind == Entry::Kind::array; }
  void openElement(Entry::Kind kind, std::uint32_t place);
  bool takeArrayEnd();
  void parseInlineTable();
  void parseElement(Token token);
  void close();

  std::uint32_t walkTable(std::uint32_t table, const HashedKey& key);
  std::uint32_t walkDottedKey(std::uint32_t table, const HashedKey& key);
  std::uint32_t lastTableOf(std::uint32_t array, const HashedKey& key) const;
  void selectTable(std::uint32_t parent, const HashedKey& key);
  void selectNewElement(std::uint32_t parent, const HashedKey& key);
  HashedKey normalizeKeyAndHash(Token token);
  TextRange unquotedKey(Token token);
  [[noreturn]] void failAtNextToken(const char* message);
  [[noreturn]] void failKeyExists(const HashedKey& key) const;

  TOMLDocument& document_;
  const KeyTransform& keyTransform_;
  Lexer lexer_;
  DocumentBuilder builder_;
  std::uint32_t currentTable_ = 0;
  std::vector<HashedKey> tablePath_;
  std::vector<Open> open_;
  FlatList<ArrayElement> pending_;  ///< elements of the arrays that aren't closed yet
};

}  // namespace toml
