#pragma once

#include <string>

namespace bench {

/// A tree, made by a process of its own: the memory that it takes would be counted in the peak of every
/// process that is started afterwards. So many folders, nested up to eight deep, and files, a few bytes each;
/// one file in fifty is a link, one a hard link and one a hidden file.
void makeTree(const std::string& root, int files, int folders);

/// A folder that holds so many empty folders.
void makeNames(const std::string& folder, int count);

/// A folder of application data as a library has it, made by a process of its own: so many folders, one for
/// each application, each with ten folders, and ten in each of those, which is the third level. Nine in ten
/// of its items are empty files below that. Each application has a link to `target`.
void makeApplicationData(const std::string& folder, int applications, const std::string& target);

/// A small application bundle.
void makeApp(const std::string& bundle, const std::string& identifier);

}  // namespace bench
