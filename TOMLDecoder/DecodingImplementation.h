#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "TOMLDecoder/Decoding.h"
#include "TOMLDecoder/KeyedDecodingContainer.h"
#include "TOMLDecoder/LeafReading.h"
#include "TOMLDecoder/UnkeyedDecodingContainer.h"

// The templates of Decoding: they need the containers, which need Decoding.
namespace toml {

/// How a type that has parts is put together.
template <typename T>
struct Composite {
  static T decode(const Decoding& from) { return T::decode(from); }
};

template <typename T>
struct Composite<std::optional<T>> {
  static std::optional<T> decode(const Decoding& from) { return from.decode<T>(); }
};

template <typename T>
struct Composite<std::vector<T>> {
  static std::vector<T> decode(const Decoding& from) {
    UnkeyedDecodingContainer unkeyed = from.unkeyed();
    std::vector<T> list;
    list.reserve(unkeyed.count());
    while (!unkeyed.isAtEnd()) list.push_back(unkeyed.decode<T>());
    return list;
  }
};

template <typename T>
struct Composite<std::map<std::string, T>> {
  static std::map<std::string, T> decode(const Decoding& from) {
    const KeyedDecodingContainer keyed = from.keyed();
    std::map<std::string, T> map;
    for (const std::string& key : keyed.allKeys()) map.emplace(key, keyed.decode<T>(key));
    return map;
  }
};

template <typename T>
T Decoding::decode() const {
  try {
    if constexpr (LeafReading::Leaf<T>) {
      return LeafReading::read<T>(*state_, content_, path_ ? &path_->key : nullptr);
    } else {
      return Composite<T>::decode(*this);
    }
  } catch (const TOMLError& error) {
    throw error.at(codingPath());
  }
}

template <typename T>
T Decoding::decodeChild(const DecodingContent& content, const TOMLKey& key) const {
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
