#include <filesystem>
#include <pwd.h>
#include <unistd.h>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::contract {
namespace {

using PlacesSubject = Subject<quarn::Places>;

std::shared_ptr<quarn::Places> theHosts() {
  return notOwned(hostPlatform().places);
}
std::shared_ptr<quarn::Places> fake() {
  return std::make_shared<doubles::FakePlaces>();
}

class Places : public testing::TestWithParam<PlacesSubject> {
 protected:
  quarn::Places& places() const { return *places_; }

 private:
  std::shared_ptr<quarn::Places> places_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Places,
                         testing::Values(PlacesSubject{"Host", theHosts}, PlacesSubject{"FakePlaces", fake}),
                         nameOf<PlacesSubject>);

TEST_P(Places, areAbsolute) {
  for (const Path& place :
       {places().home(), places().currentFolder(), places().executable(), places().temporaryFolder()})
    EXPECT_TRUE(place.text().starts_with("/")) << place.text();
}

TEST_P(Places, nobodyHasNoHome) {
  EXPECT_EQ(places().home(std::string("nobody called so")), std::nullopt);
}

TEST(HostPlaces, namedUsersHaveHomes) {
  const passwd* entry = ::getpwuid(::getuid());
  if (!entry) GTEST_SKIP() << "the user is not listed";
  const std::string user(entry->pw_name);
  EXPECT_EQ(hostPlatform().places.home(user), Path(entry->pw_dir));
}

TEST_P(Places, aVariableThatIsNotSetIsAbsent) {
  EXPECT_EQ(places().environment("QUARN_NOBODY_SETS_THIS"), std::nullopt);
}

TEST(HostPlaces, variablesAreThoseOfTheProcess) {
  EXPECT_EQ(child::failures([] {
              ::setenv("QUARN_TEST", "a value", 1);
              EXPECT_EQ(hostPlatform().places.environment("QUARN_TEST"), "a value");
              ::setenv("QUARN_TEST", "", 1);
              EXPECT_EQ(hostPlatform().places.environment("QUARN_TEST"), "");
            }),
            "");
}

TEST(HostPlaces, theFirstArgumentIsThatOfTheProcess) {
  EXPECT_EQ(hostPlatform().places.invokedAs(), testing::internal::GetArgvs().front());
}

TEST(HostPlaces, theCurrentFolderIsTheRealOne) {
  ScratchFolder scratch;
  scratch.folder("folder");
  scratch.link("link", "folder");
  const std::string real = std::filesystem::canonical(scratch.at("folder"));
  EXPECT_EQ(child::failures([&] {
              ASSERT_EQ(::chdir(scratch.at("link").c_str()), 0);
              EXPECT_EQ(hostPlatform().places.currentFolder().text(), real);
            }),
            "");
}

TEST(HostPlaces, theExecutableIsTheFileOfThisProgram) {
  const Path found = hostPlatform().places.executable();
  EXPECT_EQ(hostPlatform().files.resolvingLinks(found), found) << "every link to it resolved";
  const auto itself =
      hostPlatform().processes.start(found, {"--gtest_list_tests"}, OutputStreams::joined).orThrow();
  std::string list;
  itself->readToEnd([&](std::string_view piece) { list += piece; }, [](std::string_view) {});
  EXPECT_NE(list.find("theExecutableIsTheFileOfThisProgram"), std::string::npos);
}

}  // namespace
}  // namespace quarn::contract
