#include "tests/cli/UninstallScenes.h"

/// The recipe that brings home what an uninstall has set aside beside its place.

using namespace uninstalls;

namespace {

const std::string putBack = ". " QUARN_SOURCE "/tests/support/put-back.sh; put_back ";

std::string repeated(const std::string& text, int count) {
  std::string whole;
  for (int each = 0; each < count; ++each) whole += text;
  return whole;
}

TEST(UninstallPutBack, bringsHomeWhatHasAShortenedNameBesideItsPlace) {
  const std::string name = repeated("é", 120);
  const std::string bundle = "/Applications/" + name + ".app", caches = library + "/Caches/";
  scene::write(trash, "a file in the way");
  scene::makeApp(bundle, {.identifier = name});
  scene::write(caches + name + "/mine", "mine");
  // This isn't of the session, though its name begins as the item's does.
  scene::write(caches + ".QuarnTrash/" + repeated("é", 60) + "-uninstall-2999-01-01T000000Z", "foreign");
  const auto before = scene::tree(bundle);
  const auto run = quarn({"run", bundle, "--format", "human"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err.find("is still there"), std::string::npos) << run.err;
  EXPECT_FALSE(scene::exists(bundle));
  EXPECT_FALSE(scene::exists(caches + name));
  const auto back = scene::shell(putBack + onlySession());
  EXPECT_EQ(back.out + back.err, "");
  EXPECT_EQ(scene::tree(bundle), before);
  EXPECT_EQ(scene::read(caches + name + "/mine"), "mine");
}

TEST(UninstallPutBack, takesTheLastOneOfASecond) {
  const std::string session = library + "/Application Support/Quarn/UninstallSessions/x/session.json";
  const std::string stash = "/Applications/.QuarnTrash/Foo.app-uninstall-";
  scene::write(session,
               "{\"movedItems\":[{\"originalPath\":\"/Applications/Foo.app\",\"stashedTo\":"
               "\"/Applications/.QuarnTrash\"}]}");
  for (const std::string end :
       {"2026-01-31T090506Z-11", "2026-01-31T090507Z", "2026-01-31T090507Z-9", "2026-01-31T090507Z-10",
        "2026-01-31T090507Z-10.app", "x-uninstall-2026-01-31T090508Z"})
    scene::write(stash + end, end);
  const auto back = scene::shell(putBack + "x");
  EXPECT_EQ(back.out + back.err, "");
  EXPECT_EQ(scene::read(foo), "2026-01-31T090507Z-10");
}

}  // namespace
