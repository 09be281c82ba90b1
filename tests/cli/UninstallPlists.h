#pragma once

#include <map>
#include <string>

/// Property lists of all kinds, whole ones and broken ones, written without the code under test.
namespace plists {

using Texts = std::map<std::string, std::string>;

std::string xml(const Texts& texts);
/// Binary: the only kind that can hold a NUL. The texts have to be ASCII.
std::string binary(const Texts& texts);
/// The same keys, with something else than a text at each.
std::string numbers(const Texts& texts);
/// The root is an array that holds the dictionary.
std::string array(const Texts& texts);

}  // namespace plists
