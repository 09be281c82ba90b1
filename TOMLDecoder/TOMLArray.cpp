#include "TOMLDecoder/TOMLArray.h"

#include "TOMLDecoder/TOMLError.h"

namespace toml {

ValueKind TOMLArray::valueKindOf(std::size_t place) const {
  return checkedValueKind(*source, element(place, Entry::Kind::value, "value").text(), std::to_string(place));
}

TOMLTable TOMLArray::table(std::size_t place) const {
  return {source, element(place, Entry::Kind::table, "table").index(), false};
}

TOMLArray TOMLArray::array(std::size_t place) const {
  return {source, element(place, Entry::Kind::array, "array").index(), false};
}

ArrayElement TOMLArray::elementAt(std::size_t place) const {
  const InternalTOMLArray& array = internal();
  if (place >= array.count) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::arrayOutOfBound, .index = place, .bound = array.count});
  }
  return source->elements[array.first + static_cast<std::uint32_t>(place)];
}

ArrayElement TOMLArray::element(std::size_t place, Entry::Kind wanted, const char* expected) const {
  const ArrayElement found = elementAt(place);
  if (found.kind() != wanted) {
    throw TOMLError({.kind = TOMLError::Reason::Kind::typeMismatchInArray,
                     .lineNumber = source->lineNumber(found.place()),
                     .expected = expected,
                     .index = place});
  }
  return found;
}

}  // namespace toml
