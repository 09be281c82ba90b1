#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace quarn {

/// What a missing key, or one with the value null, means when a record is read. An optional member is then
/// empty, whatever is given here.
enum class WhenAbsent {
  isError,
  keepsDefault,  ///< keeps the value of a new record: for keys that earlier versions didn't write
};

template <class Value>
inline constexpr bool isOptional = false;
template <class Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

/// A member of a record and the key under which it is stored.
template <class Record, class Value>
struct StoredKey {
  constexpr StoredKey(std::string_view keyName, Value Record::*recordMember,
                      WhenAbsent absence = WhenAbsent::isError)
      : name(keyName), member(recordMember), whenAbsent(absence) {}

  constexpr bool mayBeAbsent() const { return isOptional<Value> || whenAbsent == WhenAbsent::keepsDefault; }

  std::string_view name;
  Value Record::*member;
  WhenAbsent whenAbsent;
};

/// The keys of a record, in the order of its members. The record is both written and read by this one list.
/// It stands in the source that stores the record, or in a header `<Record>Keys.h` if several sources do:
///
///     template <>
///     inline constexpr auto storedKeys<BackupRecord> = std::tuple{
///         StoredKey{"id", &BackupRecord::id},
///         StoredKey{"note", &BackupRecord::note, WhenAbsent::keepsDefault},
///     };
///
/// Members may be texts, flags, 64-bit integers, doubles, moments, enumerations with a table of raw values,
/// records with keys of their own, and optionals, vectors and maps (with text keys) of all these. A record is
/// an aggregate: only of one can the compiler check that each member has a key.
template <class Record>
inline constexpr std::nullptr_t storedKeys = nullptr;

template <class Record>
concept HasStoredKeys = std::is_aggregate_v<Record> && requires {
  std::tuple_size<std::remove_cvref_t<decltype(storedKeys<Record>)>>::value;
};

namespace StoredKeys {

/// Converts to any type. The compiler is only asked whether such a conversion would be accepted.
struct Anything {
  template <class Value>
  operator Value() const;
};

template <class Record, std::size_t... i>
constexpr bool takes(std::index_sequence<i...>) {
  return requires {
    Record{(static_cast<void>(i), Anything{})...};
  };
}

template <class Record>
constexpr bool areDistinct() {
  return std::apply(
      [](const auto&... keys) {
        const std::string_view names[] = {keys.name...};
        for (const auto& one : names) {
          for (const auto& other : names) {
            if (&one != &other && one == other) return false;
          }
        }
        return true;
      },
      storedKeys<Record>);
}

/// Returns whether two pointers are of one type and point to the same member.
template <class One, class Other>
constexpr bool isSame(One one, Other other) {
  if constexpr (std::is_same_v<One, Other>) return one == other;
  return false;
}

/// Returns whether no member has two keys.
template <class Record>
constexpr bool nameEachMemberOnce() {
  return std::apply(
      [](const auto&... keys) {
        const auto keysOf = [&](auto member) { return (std::size_t{isSame(member, keys.member)} + ...); };
        return ((keysOf(keys.member) == 1) && ...);
      },
      storedKeys<Record>);
}

/// Returns whether the record has no more members than keys.
template <class Record>
constexpr bool coverAllMembers() {
  constexpr auto count = std::tuple_size_v<decltype(storedKeys<Record>)>;
  return !takes<Record>(std::make_index_sequence<count + 1>());
}

}  // namespace StoredKeys

/// Returns the list after checking that it is complete.
template <HasStoredKeys Record>
constexpr const auto& checkedKeys() {
  static_assert(StoredKeys::areDistinct<Record>(), "Two members have the same key.");
  static_assert(StoredKeys::nameEachMemberOnce<Record>(), "One member has two keys.");
  static_assert(StoredKeys::coverAllMembers<Record>(), "A member has no key, and would be lost.");
  return storedKeys<Record>;
}

}  // namespace quarn
