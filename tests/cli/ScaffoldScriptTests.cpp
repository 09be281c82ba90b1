#include <gtest/gtest.h>

#include "QuarnCLI/scaffold/BuildCommandScript.h"
#include "QuarnCLI/scaffold/PresetRegistry.h"
#include "QuarnCLI/scaffold/ShellText.h"
#include "tests/support/Content.h"

/// The text of the generated script, to the letter. `expected/build.command` is the whole of it for the
/// preset "cmake".

namespace quarn {
namespace {

const BuildCommandScript::Values paperKite = {"Paper Kite", "build/Paper Kite.app", "/Volumes/X9"};

std::string expected() {
  return contentOf(QUARN_SOURCE "/tests/cli/expected/build.command");
}

/// The expected script with another body of `compile()`.
std::string expectedWith(const std::string& body) {
  std::string text = expected();
  const std::string begin = "\ncompile() {\n", end = "}\n\necho \"==> compile\"\n";
  const auto from = text.find(begin) + begin.size();
  return text.replace(from, text.find(end) - from, body);
}

const std::pair<std::string, std::string> bodies[] = {
    {"swiftpm",
     "  swift build -c release --arch arm64\n"
     "  # Adjust if your bundle is assembled by a separate script.\n"},
    {"juce", R"(  JUCER=""
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
    xcodebuild -project "Builds/MacOSX/Paper Kite.xcodeproj" -configuration Release -arch arm64 build
  else
    echo "JUCE preset: no CMakeLists.txt or .jucer found" >&2
    exit 1
  fi
)"},
    {"xcode", R"(  PROJ=""
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
  SCHEME="Paper Kite"
  DERIVED="$SCRIPT_DIR/build/DerivedData"
  xcodebuild "$KIND" "$PROJ" -scheme "$SCHEME" -configuration Release -derivedDataPath "$DERIVED" -arch arm64 build
  # If your bundle isn't found, point BIN_SRC at it here:
  #   BIN_SRC="$DERIVED/Build/Products/Release/<Name>.app"
)"},
    {"cmake",
     "  cmake -S . -B build -DCMAKE_BUILD_TYPE=Release\n"
     "  cmake --build build --config Release\n"},
    {"make", "  make\n"},
    {"npm", R"(  if [ -e pnpm-lock.yaml ]; then
    pnpm install
    pnpm run build
  elif [ -e yarn.lock ]; then
    yarn install
    yarn build
  else
    npm ci
    npm run build
  fi
)"},
    {"auto", R"(  if [ -e Package.swift ]; then
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
)"},
};

TEST(ScaffoldScript, isAsExpectedForEachPresetInTheOrderOfTheRegistry) {
  ASSERT_EQ(std::size(bodies), PresetRegistry::all.size());
  for (std::size_t i = 0; i < std::size(bodies); ++i) {
    const auto& [id, body] = bodies[i];
    EXPECT_EQ(PresetRegistry::all[i].id, id);
    EXPECT_EQ(BuildCommandScript::text(paperKite, PresetRegistry::all[i]), expectedWith(body)) << id;
  }
  EXPECT_EQ(BuildCommandScript::text(paperKite, compilePreset<CmakePreset>), expected());
}

TEST(ScaffoldScript, hasItsValuesBetweenQuotesAndNowhereElse) {
  const BuildCommandScript::Values odd = {"a\n\"b\\$(c)`d`!", "e", ""};
  const std::string quoted = R"("a
\"b\\\$(c)\`d\`!")";
  EXPECT_EQ(ShellText::quoted(odd.appName), quoted);
  for (const CompilePreset& preset : PresetRegistry::all) {
    std::string text = BuildCommandScript::text(odd, preset);
    EXPECT_NE(text.find("\nAPP_NAME=" + quoted + "\nBIN_SRC=\"e\"\nDEFAULT_DRIVE=\"\"\n"), std::string::npos);
    const std::string inside = quoted.substr(1, quoted.size() - 2);
    for (auto at = text.find(inside); at != std::string::npos; at = text.find(inside))
      text.erase(at, inside.size());
    EXPECT_EQ(text.find("(c)"), std::string::npos) << preset.id;
  }
}

/// In Shift JIS and GBK, for one, the last byte of such a letter takes the next byte along, but never a
/// quote.
TEST(ScaffoldScript, leavesNoBackslashToALetterOfTwoBytes) {
  EXPECT_EQ(ShellText::quoted("\u3041$(touch x)"), "\"\u3041\"\"\\$(touch x)\"");
  EXPECT_EQ(ShellText::quoted("\u3041`\u3041\"\u3041\\"), "\"\u3041\"\"\\`\u3041\"\"\\\"\u3041\"\"\\\\\"");
  EXPECT_EQ(ShellText::quoted("\u3041 $"), "\"\u3041 \\$\"");
}

TEST(ScaffoldScript, hasThePresetWithAnIDAndAutoForAnUnknownOne) {
  for (const CompilePreset& preset : PresetRegistry::all) {
    EXPECT_EQ(PresetRegistry::preset(preset.id).id, preset.id);
    EXPECT_EQ(PresetRegistry::preset(preset.id).body, preset.body);
  }
  for (const char* unknown : {"", "Cmake", "cmake ", "meson"})
    EXPECT_EQ(PresetRegistry::preset(unknown).id, "auto");
}

}  // namespace
}  // namespace quarn
