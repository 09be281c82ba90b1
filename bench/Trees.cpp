#include "bench/Trees.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace bench {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& content) {
  std::ofstream(file) << content;
}

/// Each folder's parent is an earlier one, so that depths and widths mix as they do in a real bundle.
std::vector<fs::path> makeFolders(const fs::path& root, int count) {
  std::vector<fs::path> folders = {root};
  fs::create_directories(root);
  while (static_cast<int>(folders.size()) < count) {
    const std::size_t number = folders.size();
    const std::size_t parent = (number - 1) / 4;
    folders.push_back(folders[parent] / ("folder-" + std::to_string(number)));
    fs::create_directory(folders.back());
  }
  return folders;
}

void makeFile(const fs::path& folder, int number, const fs::path& previous) {
  const std::string name = "file-" + std::to_string(number) + ".dat";
  switch (number % 50) {
    case 1:
      fs::create_symlink("file-0.dat", folder / name);
      break;
    case 2:
      fs::create_hard_link(previous, folder / name);
      break;
    case 3:
      write(folder / ("." + name), "hidden");
      break;
    default:
      write(folder / name, "some content " + std::to_string(number));
      break;
  }
}

void makeTreeHere(const std::string& root, int files, int folders) {
  const auto all = makeFolders(root, folders);
  const fs::path original = fs::path(root) / "original.dat";
  write(original, "the file with many names");
  for (int number = 0; number < files; ++number) {
    makeFile(all[static_cast<std::size_t>(number) % all.size()], number, original);
  }
}

void makeEmptyFiles(const std::string& folder, int count) {
  for (int number = 0; number < count; ++number) {
    const std::string file = folder + "/record " + std::to_string(number);
    ::close(::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  }
}

void makeDataOfApplication(const std::string& folder) {
  for (int number = 0; number < 100; ++number) {
    const std::string third =
        folder + "/part " + std::to_string(number / 10) + "/store " + std::to_string(number % 10);
    fs::create_directories(third);
    makeEmptyFiles(third, 9);
  }
}

void inOwnProcess(const std::function<void()>& work) {
  const pid_t maker = ::fork();
  if (maker == 0) {
    work();
    ::_exit(0);
  }
  ::waitpid(maker, nullptr, 0);
}

}  // namespace

void makeTree(const std::string& root, int files, int folders) {
  inOwnProcess([&] { makeTreeHere(root, files, folders); });
}

void makeApplicationData(const std::string& folder, int applications, const std::string& target) {
  inOwnProcess([&] {
    for (int number = 0; number < applications; ++number) {
      const std::string data = folder + "/org.example.app" + std::to_string(number);
      makeDataOfApplication(data);
      fs::create_symlink(target, data + "/moved");
    }
  });
}

void makeNames(const std::string& folder, int count) {
  fs::create_directories(folder);
  for (int number = 0; number < count; ++number) {
    fs::create_directory(fs::path(folder) / ("org.example.other" + std::to_string(number)));
  }
}

void makeApp(const std::string& bundle, const std::string& identifier) {
  const fs::path contents = fs::path(bundle) / "Contents";
  fs::create_directories(contents / "MacOS");
  write(contents / "MacOS" / "Main", "#!/bin/sh\n");
  write(contents / "Info.plist",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" +
            identifier + "</string></dict></plist>\n");
}

}  // namespace bench
