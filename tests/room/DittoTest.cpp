#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"
#include "TestRoom.h"

namespace quarn::tests {

namespace fs = std::filesystem;

namespace {

class Ditto : public testing::Test {
  const ScratchFolder scratch{"/tmp"};

 protected:
  fs::path source = scratch.at("source"), destination = scratch.at("destination");

  void SetUp() override { fs::create_directory(source); }

  Finished ditto(const std::function<void()>& before = [] {}) const {
    return run({QUARN_DITTO, source.string(), destination.string()}, before);
  }

  void copiesAll() const {
    const Finished finished = ditto();
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.err, "");
  }

  fs::path top() const { return scratch.text(); }
};

void write(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  ASSERT_TRUE(file.flush()) << path;
}

struct stat look(const fs::path& path) {
  struct stat info {};
  EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
  return info;
}

void setTimes(const fs::path& path, long seconds, long nanoseconds) {
  const timespec times[2] = {{seconds, nanoseconds}, {seconds + 1, nanoseconds + 1}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

void expectTimes(const fs::path& path, long seconds, long nanoseconds) {
  const struct stat info = look(path);
  EXPECT_EQ(info.st_mtim.tv_sec, seconds + 1) << path;
  EXPECT_EQ(info.st_mtim.tv_nsec, nanoseconds + 1) << path;
}

std::size_t entries(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

}  // namespace

TEST_F(Ditto, copiesAFoldersContentsIntoANewDestination) {
  fs::create_directories(source / "a/b");
  write(source / "a/b/c", "deep");
  write(source / ".hidden", "dot");
  fs::create_directory(source / "empty");
  copiesAll();
  EXPECT_EQ(contentOf(destination / "a/b/c"), "deep");
  EXPECT_EQ(contentOf(destination / ".hidden"), "dot");
  EXPECT_TRUE(fs::is_directory(destination / "empty"));
  EXPECT_FALSE(fs::exists(destination / "source"));
}

TEST_F(Ditto, mergesIntoADestinationThatIsThere) {
  write(source / "replaced", "new");
  fs::create_directories(destination / "kept");
  write(destination / "replaced", "a longer old content");
  write(destination / "other", "other");
  copiesAll();
  EXPECT_EQ(contentOf(destination / "replaced"), "new");
  EXPECT_EQ(contentOf(destination / "other"), "other");
  EXPECT_TRUE(fs::exists(destination / "kept"));
}

TEST_F(Ditto, makesAFileOfAFile) {
  source /= "file";
  write(source, "x");
  destination = top() / "missing/parents/file2";
  copiesAll();
  EXPECT_EQ(contentOf(destination), "x");
}

TEST_F(Ditto, putsAFileIntoADestinationFolder) {
  source /= "file";
  write(source, "x");
  fs::create_directory(destination);
  copiesAll();
  EXPECT_EQ(contentOf(destination / "file"), "x");
}

TEST_F(Ditto, followsALinkThatIsItsArgument) {
  write(source / "a", "x");
  fs::create_directory_symlink(source, top() / "link");
  source = top() / "link";
  copiesAll();
  EXPECT_FALSE(fs::is_symlink(destination));
  EXPECT_EQ(contentOf(destination / "a"), "x");
}

TEST_F(Ditto, copiesLinksInsideAsLinks) {
  fs::create_symlink("nowhere at all", source / "dangling");
  fs::create_directory_symlink("..", source / "up");
  fs::create_symlink("self", source / "self");
  setTimes(source / "dangling", 1000, 5);
  copiesAll();
  EXPECT_EQ(fs::read_symlink(destination / "dangling"), "nowhere at all");
  EXPECT_EQ(fs::read_symlink(destination / "up"), "..");
  EXPECT_EQ(fs::read_symlink(destination / "self"), "self");
  expectTimes(destination / "dangling", 1000, 5);
}

TEST_F(Ditto, replacesALinkInsteadOfWritingThroughIt) {
  write(source / "a", "new");
  write(top() / "outside", "precious");
  fs::create_directory(destination);
  fs::create_symlink(top() / "outside", destination / "a");
  copiesAll();
  EXPECT_EQ(contentOf(top() / "outside"), "precious");
  EXPECT_FALSE(fs::is_symlink(destination / "a"));
  EXPECT_EQ(contentOf(destination / "a"), "new");
}

TEST_F(Ditto, keepsModes) {
  write(source / "program", "x");
  fs::create_directory(source / "closed");
  write(source / "closed/inside", "x");
  ::chmod((source / "program").c_str(), 04751);
  ::chmod((source / "closed/inside").c_str(), 0400);
  ::chmod((source / "closed").c_str(), 0555);
  copiesAll();
  EXPECT_EQ(look(destination / "program").st_mode & 07777, 04751U);
  EXPECT_EQ(look(destination / "closed/inside").st_mode & 07777, 0400U);
  EXPECT_EQ(look(destination / "closed").st_mode & 07777, 0555U);
  for (const auto& side : {source, destination}) ::chmod((side / "closed").c_str(), 0755);
}

TEST_F(Ditto, keepsTimesToTheNanosecondOfFoldersToo) {
  fs::create_directory(source / "folder");
  write(source / "folder/file", "x");
  setTimes(source / "folder/file", 1'000'000'000, 123'456'788);
  setTimes(source / "folder", 1'100'000'000, 7);
  setTimes(source, 1'200'000'000, 8);
  copiesAll();
  expectTimes(destination / "folder/file", 1'000'000'000, 123'456'788);
  expectTimes(destination / "folder", 1'100'000'000, 7);
  expectTimes(destination, 1'200'000'000, 8);
}

TEST_F(Ditto, keepsOwnersAsFarAsAllowed) {
  write(source / "a", "x");
  if (::chown((source / "a").c_str(), 1234, 2345) != 0) GTEST_SKIP() << "this user cannot give files away";
  copiesAll();
  EXPECT_EQ(look(destination / "a").st_uid, 1234U);
  EXPECT_EQ(look(destination / "a").st_gid, 2345U);
}

TEST_F(Ditto, givesNobodyTheRightsOfAnotherOwner) {
  write(source / "a", "x");
  ::chmod((source / "a").c_str(), 06755);
  fs::permissions(top(), fs::perms(0777));
  // The build may lie where another user can't reach it.
  const fs::path reachable = top() / "ditto";
  fs::copy_file(QUARN_DITTO, reachable);
  const Finished finished = run({reachable.string(), source.string(), destination.string()}, [] {
    if (::setresgid(65534, 65534, 65534) != 0 || ::setresuid(65534, 65534, 65534) != 0) ::_exit(99);
  });
  if (::geteuid() == 65534 || finished.status == 99) GTEST_SKIP() << "this user cannot become another";
  EXPECT_EQ(finished.status, 0) << finished.err;
  EXPECT_EQ(look(destination / "a").st_uid, 65534U);
  EXPECT_EQ(look(destination / "a").st_mode & 07777, 0755U);
}

TEST_F(Ditto, keepsExtendedAttributesOfFilesAndFolders) {
  write(source / "a", "x");
  fs::create_directory(source / "d");
  if (::setxattr((source / "a").c_str(), "user.color", "re\0d", 4, 0) != 0)
    GTEST_SKIP() << "no extended attributes in /tmp";
  ASSERT_EQ(::setxattr((source / "d").c_str(), "user.folder", "1", 1, 0), 0);
  ::chmod((source / "a").c_str(), 0444);
  copiesAll();
  char value[16];
  EXPECT_EQ(::getxattr((destination / "a").c_str(), "user.color", value, sizeof value), 4);
  EXPECT_EQ(std::string(value, 4), std::string("re\0d", 4));
  EXPECT_EQ(::getxattr((destination / "d").c_str(), "user.folder", value, sizeof value), 1);
}

TEST_F(Ditto, keepsHardLinksWithinTheTree) {
  fs::create_directory(source / "d");
  write(source / "a", "one");
  fs::create_hard_link(source / "a", source / "d/b");
  fs::create_hard_link(source / "a", top() / "outside");
  fs::create_directory(destination);
  write(destination / "a", "old");
  copiesAll();
  EXPECT_EQ(look(destination / "a").st_ino, look(destination / "d/b").st_ino);
  EXPECT_EQ(look(destination / "a").st_nlink, 2U);
  EXPECT_EQ(contentOf(destination / "d/b"), "one");
}

TEST_F(Ditto, keepsHoles) {
  const std::string path = (source / "sparse").string();
  const Descriptor file(::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  ASSERT_EQ(::pwrite(file.number(), "begin", 5, 0), 5);
  ASSERT_EQ(::pwrite(file.number(), "middle", 6, 8 << 20), 6);
  ASSERT_EQ(::ftruncate(file.number(), 32 << 20), 0);
  copiesAll();
  EXPECT_EQ(look(destination / "sparse").st_size, 32 << 20);
  EXPECT_LT(look(destination / "sparse").st_blocks * 512, 1 << 20);
  EXPECT_EQ(contentOf(destination / "sparse"), contentOf(path));
}

TEST_F(Ditto, copiesBigFilesWhole) {
  std::string text;
  while (text.size() < (5U << 20)) text += std::to_string(text.size()) + "\n";
  write(source / "big", text);
  write(source / "none", "");
  copiesAll();
  EXPECT_EQ(contentOf(destination / "big"), text);
  EXPECT_EQ(fs::file_size(destination / "none"), 0U);
}

TEST_F(Ditto, passesOverPipesSocketsAndServerLeftovers) {
  ASSERT_EQ(::mkfifo((source / "pipe").c_str(), 0644), 0);
  const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (source / "socket").string().copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  for (const char* name : {".nfs0001", ".afpDeleted7", "real"}) write(source / name, "x");
  copiesAll();
  EXPECT_EQ(entries(destination), 1U);
  EXPECT_EQ(contentOf(destination / "real"), "x");
}

TEST_F(Ditto, neverReplacesAFolderByAFileNorTheReverseAndGoesOn) {
  write(source / "a", "file");
  fs::create_directory(source / "b");
  write(source / "b/inside", "x");
  fs::create_symlink("x", source / "c");
  write(source / "z", "last");
  fs::create_directories(destination / "a");
  fs::create_directories(destination / "c");
  write(destination / "b", "file");
  const Finished finished = ditto();
  EXPECT_EQ(finished.status, 1);
  const std::string d = destination.string();
  EXPECT_NE(finished.err.find("ditto: " + d + "/a: Is a directory\n"), std::string::npos) << finished.err;
  EXPECT_NE(finished.err.find("ditto: " + d + "/b: Not a directory\n"), std::string::npos) << finished.err;
  EXPECT_NE(finished.err.find("ditto: " + d + "/c: Is a directory\n"), std::string::npos) << finished.err;
  EXPECT_EQ(contentOf(destination / "b"), "file");
  EXPECT_EQ(contentOf(destination / "z"), "last");
}

TEST_F(Ditto, namesWhatItCannotReadAndGoesOn) {
  write(source / "closed", "x");
  write(source / "open", "x");
  fs::create_directory(source / "folder");
  ::chmod((source / "closed").c_str(), 0);
  ::chmod((source / "folder").c_str(), 0);
  const Finished finished = ditto([] {
    // Root reads everything as long as it has these.
    for (const int right : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) ::prctl(PR_CAPBSET_DROP, right, 0, 0, 0);
  });
  ::chmod((source / "folder").c_str(), 0755);
  EXPECT_EQ(finished.status, 1);
  for (const char* name : {"closed", "folder"})
    EXPECT_NE(finished.err.find("ditto: " + (source / name).string() + ": Permission denied\n"),
              std::string::npos)
        << finished.err;
  EXPECT_EQ(contentOf(destination / "open"), "x");
}

TEST_F(Ditto, saysWhenTheSourceIsMissing) {
  const Finished finished = run({QUARN_DITTO, "--rsrc", "/no/such", destination.string()});
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.err, "ditto: can't get real path for source '/no/such'\n");
  EXPECT_FALSE(fs::exists(destination));
}

TEST_F(Ditto, takesNamesAsBytes) {
  const std::vector<std::string> names = {"two spaces  ",
                                          "'single' \"double\"",
                                          "tab\there",
                                          "line\nfeed",
                                          "caf\xc3\xa9",
                                          "cafe\xcc\x81",
                                          "\xff\xfe not unicode",
                                          "\xf0\x9f\x93\xa6 emoji",
                                          std::string(255, 'n'),
                                          "-rf",
                                          "back\\slash",
                                          "*"};
  for (const std::string& name : names) write(source / name, name);
  copiesAll();
  EXPECT_EQ(entries(destination), names.size());
  for (const std::string& name : names) EXPECT_EQ(contentOf(destination / name), name);
}

TEST_F(Ditto, reachesDeeperThanAnyPathMayBeLong) {
  // 40 times 200 bytes of names is beyond the 4,096 that one path may have.
  const std::string name(200, 'd');
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  Descriptor folder(::open(source.c_str(), flags));
  for (int level = 0; level < 40; ++level) {
    ASSERT_EQ(::mkdirat(folder.number(), name.c_str(), 0755), 0);
    folder = Descriptor(::openat(folder.number(), name.c_str(), flags));
  }
  copiesAll();
  folder = Descriptor(::open(destination.c_str(), flags));
  for (int level = 0; level < 40; ++level) {
    folder = Descriptor(::openat(folder.number(), name.c_str(), flags));
    ASSERT_TRUE(folder.isOpen()) << level;
  }
}

TEST_F(Ditto, comesToAnEndWhenItsDestinationLiesInItsSource) {
  write(source / "a", "x");
  destination = source / "copy";
  copiesAll();
  EXPECT_EQ(contentOf(destination / "a"), "x");
  EXPECT_FALSE(fs::exists(destination / "copy"));
}

TEST_F(Ditto, leavesATreeCopiedOntoItselfAlone) {
  write(source / "a", "x");
  destination = source;
  copiesAll();
  EXPECT_EQ(contentOf(source / "a"), "x");
  source /= "a";
  destination = source;
  copiesAll();
  EXPECT_EQ(contentOf(source), "x");
}

}  // namespace quarn::tests
