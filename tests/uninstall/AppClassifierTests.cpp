#include "QuarnCore/uninstall/AppClassifier.h"
#include "tests/uninstall/Uninstalling.h"

namespace quarn {
namespace {

using namespace uninstalling;

std::optional<std::string> developer(const InfoPlist::Texts& texts) {
  return AppClassifier::developer(texts);
}

TEST(AppClassifier, judgesALinkByTheGivenTarget) {
  EXPECT_EQ(AppClassifier::classify(hostPlatform(), Path(foo), {}, "/x/Foo.app"),
            (AppClassification{AppRecordKind::symlink, false, "/x/Foo.app"}));
}

TEST(AppClassifier, givesTheTargetOfALauncherOnlyIfItCanBeRead) {
  EXPECT_EQ(AppClassifier::classify(hostPlatform(), Path(foo),
                                    {{"CFBundleExecutable", "ExternalAppLauncher"}}, std::nullopt),
            (AppClassification{AppRecordKind::quarnLauncher, true, std::nullopt}));
  scene::write(foo + "/Contents/Resources/ExternalAppTarget.txt", "\xFF\xFE");
  EXPECT_EQ(AppClassifier::classify(hostPlatform(), Path(foo), {}, std::nullopt),
            (AppClassification{AppRecordKind::quarnLauncher, true, std::nullopt}));
}

TEST(AppClassifier, takesTheDeveloperFromTheFirstTextThatIsThere) {
  EXPECT_EQ(developer({}), std::nullopt);
  EXPECT_EQ(developer({{"CFBundleGetInfoString", ""}, {"NSHumanReadableCopyright", ""}}), std::nullopt);
  EXPECT_EQ(developer({{"CFBundleGetInfoString", "A"}, {"NSHumanReadableCopyright", "B"}}), "A");
  EXPECT_EQ(developer({{"CFBundleGetInfoString", ""}, {"NSHumanReadableCopyright", "B"}}), "B");
}

TEST(AppClassifier, removesTheWordsAroundTheDeveloper) {
  const auto copyright = [](const std::string& text) {
    return developer({{"NSHumanReadableCopyright", text}});
  };
  EXPECT_EQ(copyright("\n Copyright © 2026 Example\t"), "2026 Example");
  EXPECT_EQ(copyright("© Copyright"), "") << "an empty text is one, too";
  EXPECT_EQ(copyright("copyright x"), "copyright x") << "letter case matters";
  EXPECT_EQ(copyright("CopyCopyrightright"), "Copyright") << "what only comes together isn't removed";
}

TEST(AppClassifier, keepsEightyCharactersOfADeveloper) {
  std::string text, kept;
  for (int i = 0; i < 100; ++i) text += "é";
  for (int i = 0; i < 80; ++i) kept += "é";
  EXPECT_EQ(developer({{"NSHumanReadableCopyright", text}}), kept);
}

TEST(AppClassifier, readsADeveloperOfAMegabyteInNoTime) {
  std::string text;
  while (text.size() < 1'000'000) text += "Copyright ©x";
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(developer({{"NSHumanReadableCopyright", text}})->size(), 80u);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << "linear, not quadratic";
}

}  // namespace
}  // namespace quarn
