#include "TOMLDecoder/internal/Parser.h"

namespace toml {

namespace {

using Kind = Token::Kind;

}  // namespace

void Parser::parseValue(std::uint32_t table, const HashedKey& key) {
  const char first = lexer_.nextByte();
  if (first == '[' || first == '{') {
    if (builder_.find(table, key)) failKeyExists(key);
    openValue(table, key);
    // Inside other brackets, the loop that read those goes on.
    if (open_.size() == 1) parseNested();
    return;
  }
  const Token token = lexer_.nextToken(false);
  const bool isValue = token.kind == Kind::bareKey || token.kind == Kind::string;
  if (!isValue) lexer_.fail(token.text.offset, "expected a value");
  if (!builder_.addValue(table, key, token.text)) failKeyExists(key);
}

/// Opens the array or the inline table that is the value of a key.
void Parser::openValue(std::uint32_t table, const HashedKey& key) {
  if (lexer_.takeDirectly('[')) {
    open_.push_back({Entry::Kind::array, builder_.addArray(table, key), pending_.size()});
  } else if (lexer_.takeDirectly('{')) {
    open_.push_back({Entry::Kind::table, builder_.addTable(table, key, {})});
  }
}

void Parser::parseNested() {
  while (!open_.empty()) {
    if (open_.back().kind == Entry::Kind::array) {
      parseElements();
    } else {
      parseInlineTable();
    }
  }
}

/// Goes on in the innermost array, and in those around it, as far as no inline table stands in between.
void Parser::parseElements() {
  while (isInArray()) {
    if (open_.back().hasContent && takeArrayEnd()) {
      close();
    } else if (lexer_.take('[')) {
      openElement(Entry::Kind::array, lexer_.cursor() - 1);
    } else if (const Token token = lexer_.nextTokenOnAnyLine(false); token.kind == Kind::rbracket) {
      close();
    } else {
      parseElement(token);
    }
  }
}

/// What stands after an element: true for the bracket, false for a comma.
bool Parser::takeArrayEnd() {
  if (lexer_.take(',')) return false;
  if (lexer_.take(']')) return true;
  const Token token = lexer_.nextTokenOnAnyLine(false);
  if (token.kind != Kind::comma && token.kind != Kind::rbracket) {
    lexer_.fail(token.text.offset, "expected , or ] in an array");
  }
  return token.kind == Kind::rbracket;
}

void Parser::parseElement(Token token) {
  if (token.kind == Kind::bareKey || token.kind == Kind::string) {
    open_.back().hasContent = true;
    pending_.add(ArrayElement::leaf(token.text));
  } else if (token.kind == Kind::lbracket) {
    openElement(Entry::Kind::array, token.text.offset);
  } else if (token.kind == Kind::lbrace) {
    openElement(Entry::Kind::table, token.text.offset);
  } else {
    lexer_.fail(token.text.offset, "expected a value");
  }
}

void Parser::openElement(Entry::Kind kind, std::uint32_t place) {
  open_.back().hasContent = true;
  if (kind == Entry::Kind::array) {
    const std::uint32_t array = document_.arrays.add({});
    pending_.add(ArrayElement::array(array, place));
    open_.push_back({kind, array, pending_.size()});
  } else {
    const std::uint32_t table = document_.tables.add({});
    pending_.add(ArrayElement::table(table, place));
    open_.push_back({kind, table});
  }
}

/// Up to the end of the table, or to the next opening bracket within.
void Parser::parseInlineTable() {
  const std::size_t depth = open_.size();
  while (open_.size() == depth) {
    if (lexer_.take('}')) return close();
    if (open_.back().hasContent && !lexer_.take(',')) failAtNextToken("expected , or } in an inline table");
    open_.back().hasContent = true;
    parseKeyValue(open_.back().index, lexer_.nextToken(true));
  }
}

void Parser::close() {
  const Open closed = open_.back();
  open_.pop_back();
  if (closed.kind == Entry::Kind::table) {
    document_.tables[closed.index].readOnly = 1;
    return;
  }
  builder_.closeArray(closed.index, pending_.begin() + closed.firstElement,
                      pending_.size() - closed.firstElement);
  pending_.shrinkTo(closed.firstElement);
}

}  // namespace toml
