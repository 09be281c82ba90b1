#include "TOMLDecoder/TOMLArray.h"

namespace toml {

ValueKind TOMLArray::valueKindOf(std::size_t place) const {
  const TextRange token = element(place, Entry::Kind::value, "value").text();
  const ValueKind kind = toml::valueKindOf(source->text(token));
  if (kind == ValueKind::invalid) DirectReading::failAsInvalid(*source, self(), place, token);
  return kind;
}

TOMLTable TOMLArray::table(std::size_t place) const {
  return {source, element(place, Entry::Kind::table, "table").index(), false};
}

TOMLArray TOMLArray::array(std::size_t place) const {
  return {source, element(place, Entry::Kind::array, "array").index(), false};
}

TOMLArray::Iterator TOMLArray::begin() const {
  return {source, arrayIndex(), 0};
}

TOMLArray::Iterator TOMLArray::end() const {
  return {source, arrayIndex(), internal().count};
}

TOMLItem TOMLArray::Iterator::operator*() const {
  const ArrayElement element = source_->elements[source_->arrays[array_].first + place_];
  return {source_, {Entry::Kind::array, array_}, std::size_t{place_}, source_->contentOf(element)};
}

ArrayElement TOMLArray::elementAt(std::size_t place) const {
  const InternalTOMLArray& array = internal();
  if (place >= array.count) DirectReading::failBeyondEnd(*source, self(), place);
  return source->elements[array.first + static_cast<std::uint32_t>(place)];
}

ArrayElement TOMLArray::element(std::size_t place, Entry::Kind wanted, const char* expected) const {
  const ArrayElement found = elementAt(place);
  if (found.kind() != wanted) {
    DirectReading::failAsType(*source, self(), place, source->contentOf(found), expected);
  }
  return found;
}

}  // namespace toml
