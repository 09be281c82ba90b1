#pragma once

#include "TOMLDecoder/Decodable.h"
#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"

// The templates that need both `Decoding` and its containers, whose headers need each other.
namespace toml {

template <Decodable T>
std::optional<T> DecodingOf<std::optional<T>>::decode(const Decoding& from) {
  return from.decode<T>();
}

template <Decodable T>
std::vector<T> DecodingOf<std::vector<T>>::decode(const Decoding& from) {
  UnkeyedDecodingContainer unkeyed = from.unkeyed();
  std::vector<T> list;
  list.reserve(unkeyed.count());
  while (!unkeyed.isAtEnd()) list.push_back(unkeyed.decode<T>());
  return list;
}

template <Decodable T>
std::map<std::string, T> DecodingOf<std::map<std::string, T>>::decode(const Decoding& from) {
  const KeyedDecodingContainer keyed = from.keyed();
  std::map<std::string, T> map;
  for (const std::string& key : keyed.allKeys()) map.emplace(key, keyed.decode<T>(key));
  return map;
}

template <typename T>
T Decoding::decode() const {
  static_assert(Decodable<T>,
                "a type needs a static decode function, or a specialisation of toml::DecodingOf");
  try {
    if constexpr (LeafReading::Leaf<T>) {
      return LeafReading::read<T>(*state_, content_, path_ ? &path_->key : nullptr);
    } else if constexpr (HasDecodingOf<T>) {
      return DecodingOf<T>::decode(*this);
    } else {
      return T::decode(*this);
    }
  } catch (const TOMLError& error) {
    throw located(error);
  }
}

template <typename T>
T Decoding::decodeChild(const Content& content, const TOMLKey& key) const {
  if constexpr (LeafReading::Leaf<T>) {
    try {
      return LeafReading::read<T>(*state_, content, &key);
    } catch (const TOMLError& error) {
      throw error.at(codingPath(key));
    }
  } else {
    return child(content, key).template decode<T>();
  }
}

}  // namespace toml
