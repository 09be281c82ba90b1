#include "QuarnCLI/scaffold/CompilePreset.h"

#include "QuarnCLI/scaffold/ShellText.h"

namespace quarn {

// The scripts are run by the bash of a Mac, version 3.2. A pattern that nothing matches stands for itself
// there, and is no item.

std::string SwiftpmPreset::body(std::string_view) {
  return R"bash(  swift build -c release --arch arm64
  # Adjust if your bundle is assembled by a separate script.
)bash";
}

std::string JucePreset::body(std::string_view appName) {
  return R"bash(  JUCER=""
  for candidate in *.jucer; do
    if [ -e "$candidate" ]; then
      JUCER="$candidate"
      break
    fi
  done
  if [ -e CMakeLists.txt ]; then
    cmake -S . -B build -G Xcode -DCMAKE_BUILD_TYPE=Release
    cmake --build build --config Release
  elif [ -n "$JUCER" ]; then
    if command -v Projucer >/dev/null; then
      Projucer --resave "$JUCER"
    else
      /Applications/Projucer.app/Contents/MacOS/Projucer --resave "$JUCER"
    fi
    xcodebuild -project )bash" +
         ShellText::quoted("Builds/MacOSX/" + std::string(appName) + ".xcodeproj") +
         R"bash( -configuration Release -arch arm64 build
  else
    echo "JUCE preset: no CMakeLists.txt or .jucer found" >&2
    exit 1
  fi
)bash";
}

std::string XcodePreset::body(std::string_view appName) {
  return R"bash(  PROJ=""
  for candidate in *.xcworkspace *.xcodeproj; do
    if [ -e "$candidate" ]; then
      PROJ="$candidate"
      break
    fi
  done
  case "$PROJ" in
    *.xcworkspace) KIND="-workspace" ;;
    *.xcodeproj) KIND="-project" ;;
    *)
      echo "no .xcworkspace or .xcodeproj" >&2
      exit 1
      ;;
  esac
  SCHEME=)bash" +
         ShellText::quoted(appName) +
         R"bash(
  DERIVED="$SCRIPT_DIR/build/DerivedData"
  xcodebuild "$KIND" "$PROJ" -scheme "$SCHEME" -configuration Release -derivedDataPath "$DERIVED" -arch arm64 build
  # If your bundle isn't found, point BIN_SRC at it here:
  #   BIN_SRC="$DERIVED/Build/Products/Release/<Name>.app"
)bash";
}

std::string CmakePreset::body(std::string_view) {
  return R"bash(  cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
  cmake --build build --config Release
)bash";
}

std::string MakePreset::body(std::string_view) {
  return "  make\n";
}

std::string NpmPreset::body(std::string_view) {
  return R"bash(  if [ -e pnpm-lock.yaml ]; then
    pnpm install
    pnpm run build
  elif [ -e yarn.lock ]; then
    yarn install
    yarn build
  else
    npm ci
    npm run build
  fi
)bash";
}

std::string AutoPreset::body(std::string_view) {
  return R"bash(  if [ -e Package.swift ]; then
    swift build -c release --arch arm64
  elif compgen -G "*.jucer" >/dev/null || grep -qs juce CMakeLists.txt; then
    echo "JUCE project detected — rerun: scaffold build-command --preset juce" >&2
    exit 1
  elif compgen -G "*.xcworkspace" >/dev/null || compgen -G "*.xcodeproj" >/dev/null; then
    echo "Xcode project detected — rerun: scaffold build-command --preset xcode" >&2
    exit 1
  elif [ -e CMakeLists.txt ]; then
    cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
    cmake --build build --config Release
  elif [ -e Makefile ]; then
    make
  elif [ -e package.json ]; then
    npm ci && npm run build
  else
    echo "No known build system. Edit compile() in build.command." >&2
    exit 1
  fi
)bash";
}

}  // namespace quarn
