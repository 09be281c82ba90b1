#include "TOMLDecoder/Parser.h"

namespace toml {

namespace {

using Kind = Token::Kind;

}  // namespace

void Parser::parseValue(std::uint32_t table, const HashedKey& key) {
  const Token token = lexer_.nextToken(false);
  if (token.kind == Kind::bareKey || token.kind == Kind::string) {
    if (!builder_.addValue(table, key, token.text)) failKeyExists(key);
    return;
  }
  if (builder_.find(table, key)) failKeyExists(key);
  openValue(token, table, key);
  // Inside of other brackets, those who opened them go on.
  if (open_.size() == 1) parseNested();
}

/// Opens the array or the inline table that is the value of a key.
void Parser::openValue(Token token, std::uint32_t table, const HashedKey& key) {
  if (token.kind == Kind::lbracket) {
    open_.push_back({Entry::Kind::array, builder_.addArray(table, key), pending_.size()});
  } else if (token.kind == Kind::lbrace) {
    open_.push_back({Entry::Kind::table, builder_.addTable(table, key, {})});
  } else {
    lexer_.fail(token.text.offset, "expected a value");
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

/// Up to the end of the array, or to the next opening bracket within.
void Parser::parseElements() {
  const std::size_t depth = open_.size();
  if (open_.back().hasContent && takeArrayEnd()) return close();
  while (open_.size() == depth) {
    const Token token = lexer_.nextTokenOnAnyLine(false);
    if (token.kind == Kind::rbracket) return close();
    open_.back().hasContent = true;
    parseElement(token);
    if (open_.size() == depth && takeArrayEnd()) return close();
  }
}

/// What stands behind an element: true for the bracket, false for a comma.
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
  const std::uint32_t place = token.text.offset;
  if (token.kind == Kind::bareKey || token.kind == Kind::string) {
    pending_.add(ArrayElement::leaf(token.text));
  } else if (token.kind == Kind::lbracket) {
    const std::uint32_t array = document_.arrays.add({});
    pending_.add(ArrayElement::array(array, place));
    open_.push_back({Entry::Kind::array, array, pending_.size()});
  } else if (token.kind == Kind::lbrace) {
    const std::uint32_t table = document_.tables.add({});
    pending_.add(ArrayElement::table(table, place));
    open_.push_back({Entry::Kind::table, table});
  } else {
    lexer_.fail(place, "expected a value");
  }
}

/// Up to the end of the table, or to the next opening bracket within.
void Parser::parseInlineTable() {
  const std::size_t depth = open_.size();
  while (open_.size() == depth) {
    Token token = lexer_.nextToken(true);
    if (token.kind == Kind::rbrace) return close();
    if (open_.back().hasContent) {
      if (token.kind != Kind::comma) lexer_.fail(token.text.offset, "expected , or } in an inline table");
      token = lexer_.nextToken(true);
    }
    open_.back().hasContent = true;
    parseKeyValue(open_.back().index, token);
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
