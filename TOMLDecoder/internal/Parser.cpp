#include "TOMLDecoder/internal/Parser.h"

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/KeyHash.h"
#include "TOMLDecoder/internal/UTF8.h"
#include "TOMLDecoder/internal/Unpacking.h"

namespace toml {

namespace {

using Kind = Token::Kind;

/// Throws if the text is too long, or isn't UTF-8.
void checkText(const TOMLDocument& document) {
  using Fault = TOMLError::Reason::Kind;
  if (document.source.size() > TOMLDocument::mostBytes) {
    throw TOMLError(
        {.kind = Fault::syntax, .lineNumber = 1, .message = "a document of 1 GiB or more can't be read"});
  }
  const std::size_t valid = UTF8::validPrefix(document.source);
  if (valid < document.source.size()) {
    throw TOMLError({.kind = Fault::invalidUTF8, .lineNumber = document.lineNumber(valid)});
  }
}

}  // namespace

TOMLDocument Parser::parse(std::string source, const KeyTransform& keyTransform) {
  TOMLDocument document;
  document.source = std::move(source);
  document.lines = LineNumbers(document.source);
  checkText(document);
  document.tables.add({});
  Parser(document, keyTransform).parseDocument();
  document.trim();
  return document;
}

Parser::Parser(TOMLDocument& document, const KeyTransform& keyTransform)
    : document_(document), keyTransform_(keyTransform), lexer_(document), builder_(document) {}

void Parser::parseDocument() {
  for (;;) {
    const Token token = lexer_.nextTokenOnAnyLine(true);
    if (token.kind == Kind::eof) return;
    if (token.kind == Kind::lbracket) {
      parseSelect();
      if (!lexer_.takeLineEnd()) lexer_.fail(lexer_.cursor(), "extra chars after ] or ]]");
    } else {
      parseKeyValue(currentTable_, token);
      if (!lexer_.takeLineEnd()) lexer_.fail(lexer_.cursor(), "extra chars after value");
    }
  }
}

void Parser::parseSelect() {
  const bool isElement = lexer_.takeDirectly('[');
  parseTablePath();
  if (!lexer_.take(']') || (isElement && !lexer_.takeDirectly(']'))) {
    failAtNextToken(isElement ? "expected ]] behind the key" : "expected ] behind the key");
  }
  std::uint32_t table = 0;
  for (std::size_t index = 0; index + 1 < tablePath_.size(); ++index)
    table = walkTable(table, tablePath_[index]);
  if (isElement) {
    selectNewElement(table, tablePath_.back());
  } else {
    selectTable(table, tablePath_.back());
  }
}

void Parser::parseTablePath() {
  tablePath_.clear();
  do {
    tablePath_.push_back(normalizeKeyAndHash(lexer_.nextToken(true)));
  } while (lexer_.take('.'));
}

void Parser::parseKeyValue(std::uint32_t table, Token token) {
  HashedKey key = normalizeKeyAndHash(token);
  while (lexer_.take('.')) {
    table = walkDottedKey(table, key);
    key = normalizeKeyAndHash(lexer_.nextToken(true));
  }
  if (!lexer_.takeDirectly('=')) lexer_.fail(lexer_.cursor(), "expected = behind the key");
  parseValue(table, key);
}

/// If no token begins there, the error is about that.
void Parser::failAtNextToken(const char* message) {
  lexer_.fail(lexer_.nextToken(true).text.offset, message);
}

}  // namespace toml
