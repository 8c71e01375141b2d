// Reading and writing files: what is replaced, what is kept, and the messages of failures.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "document/page/File.h"

namespace kvo::page {
namespace {

namespace fs = std::filesystem;

class FileTest : public ::testing::Test {
 protected:
  FileTest() {
    std::string name = (fs::temp_directory_path() / "kvo-file-test-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~FileTest() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  void Put(const std::string& name, std::string_view text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
  }
  std::string Get(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }
  static void Write(const std::string& path, std::string_view text) {
    const auto output = OpenOutput(path);
    output->append(text);
    output->Commit();
  }
  // Returns the English text of the error that `work` throws; empty if none.
  template <class Work>
  static std::string ErrorOf(Work&& work) {
    try {
      work();
    } catch (const FileError& error) {
      EXPECT_NE(error.Text(Language::german), error.Text(Language::english));
      EXPECT_NE(error.Text(Language::english).find(error.File()), std::string::npos);
      return error.Text(Language::english);
    }
    return {};
  }
  static bool Says(const std::string& message, const std::string& part) {
    return message.find(part) != std::string::npos;
  }

  fs::path folder_;
};

TEST_F(FileTest, ReadsWhatWasWritten) {
  const std::string text = std::string("a\0\r\n\xFF", 5) + std::string(300000, 'x');
  Write(Path("page"), text);
  EXPECT_EQ(ReadFile(Path("page")), text);
  Write(Path("page"), "");
  EXPECT_EQ(ReadFile(Path("page")), "");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(FileTest, AppearsOnlyOnCommit) {
  Put("page", "old");
  {
    const auto output = OpenOutput(Path("page"));
    output->append("new");
    EXPECT_EQ(Get("page"), "old");
  }
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(FileTest, MayBeWrittenWhileBeingRead) {
  Put("page", "old");
  std::ifstream old(Path("page"));
  Write(Path("page"), "new");
  std::string text;
  old >> text;
  EXPECT_EQ(text, "old");
  EXPECT_EQ(Get("page"), "new");
}

TEST_F(FileTest, KeepsModeAndOwner) {
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0640), 0);
  const bool isRoot = geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(chown(Path("page").c_str(), 12345, 23456), 0);
  }
  struct stat before;
  ASSERT_EQ(stat(Path("page").c_str(), &before), 0);
  Write(Path("page"), "new");
  struct stat after;
  ASSERT_EQ(stat(Path("page").c_str(), &after), 0);
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
  EXPECT_EQ(Get("page"), "new");
}

TEST_F(FileTest, IsCreatedWithTheUsualMode) {
  const mode_t mask = umask(027);
  Write(Path("new"), "x");
  umask(mask);
  struct stat status;
  ASSERT_EQ(stat(Path("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(FileTest, IsCreatedWithoutExtraRights) {
  const mode_t mask = umask(0);
  Write(Path("new"), "x");
  umask(mask);
  struct stat status;
  ASSERT_EQ(stat(Path("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0666U);
}

// Access lists, in the system's format.
constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultList = "system.posix_acl_default";  // a folder's, for new files
enum Tag : std::uint16_t { owner = 1, user = 2, owningGroup = 4, mask = 0x10, other = 0x20 };
struct Entry {
  Tag tag;
  std::uint16_t rights;
  std::uint32_t id = 0xFFFFFFFF;
};

class AccessListTest : public FileTest {
 protected:
  void SetUp() override {
    Put("probe", "");
    if (!Grant("probe", kAccessList,
               {{owner, 6}, {user, 4, 54321}, {owningGroup, 4}, {mask, 4}, {other, 0}}))
      GTEST_SKIP() << "the file system of the temporary folder has no access lists";
    fs::remove(Path("probe"));
  }

  bool Grant(const std::string& name, const char* kind, const std::vector<Entry>& entries) const {
    std::string list("\2\0\0\0", 4);
    for (const Entry& entry : entries) {
      list.append(reinterpret_cast<const char*>(&entry.tag), sizeof entry.tag);
      list.append(reinterpret_cast<const char*>(&entry.rights), sizeof entry.rights);
      list.append(reinterpret_cast<const char*>(&entry.id), sizeof entry.id);
    }
    return setxattr(Path(name).c_str(), kind, list.data(), list.size(), 0) == 0;
  }
  // Empty for a file without an access list.
  std::string ListOf(const std::string& name) const {
    std::array<char, 1000> list;
    const ssize_t size = getxattr(Path(name).c_str(), kAccessList, list.data(), list.size());
    return size < 0 ? "" : std::string(list.data(), static_cast<std::size_t>(size));
  }
  unsigned ModeOf(const std::string& name) const {
    struct stat status;
    EXPECT_EQ(stat(Path(name).c_str(), &status), 0);
    return status.st_mode & 07777U;
  }
};

TEST_F(AccessListTest, IsKept) {
  Put("page", "old");
  // The group itself has no rights; the mode shows the mask in its place.
  ASSERT_TRUE(Grant("page", kAccessList,
                    {{owner, 6}, {user, 6, 54321}, {owningGroup, 0}, {mask, 6}, {other, 0}}));
  ASSERT_EQ(ModeOf("page"), 0660U);
  const std::string list = ListOf("page");
  Write(Path("page"), "new");
  EXPECT_EQ(ListOf("page"), list);
  EXPECT_EQ(ModeOf("page"), 0660U);
  EXPECT_EQ(Get("page"), "new");
}

TEST_F(AccessListTest, ThatDeniesAccessIsKept) {
  Put("page", "old");
  ASSERT_TRUE(Grant("page", kAccessList,
                    {{owner, 6}, {user, 0, 54321}, {owningGroup, 4}, {mask, 4}, {other, 4}}));
  const std::string list = ListOf("page");
  Write(Path("page"), "new");
  EXPECT_EQ(ListOf("page"), list);
}

TEST_F(AccessListTest, OfTheFolderDoesNotApplyToAnOldPage) {
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0664), 0);
  ASSERT_TRUE(Grant(".", kDefaultList,
                    {{owner, 7}, {user, 7, 54321}, {owningGroup, 7}, {mask, 7}, {other, 7}}));
  Write(Path("page"), "new");
  EXPECT_EQ(ListOf("page"), "");
  EXPECT_EQ(ModeOf("page"), 0664U);
}

TEST_F(AccessListTest, OfTheFolderAppliesToANewPage) {
  ASSERT_TRUE(Grant(".", kDefaultList,
                    {{owner, 7}, {user, 4, 54321}, {owningGroup, 0}, {mask, 4}, {other, 0}}));
  Put("any", "");
  Write(Path("new"), "x");
  EXPECT_NE(ListOf("new"), "");
  EXPECT_EQ(ListOf("new"), ListOf("any"));
  EXPECT_EQ(ModeOf("new"), ModeOf("any"));
  EXPECT_EQ(ModeOf("new") & 07U, 0U);
}

TEST_F(FileTest, IsReplacedAtTheTargetOfASymbolicLink) {
  fs::create_directory(Path("real"));
  Put("real/page", "old");
  fs::create_symlink("real/page", Path("one"));
  fs::create_symlink(Path("one"), Path("two"));
  Write(Path("two"), "new");
  EXPECT_EQ(Get("real/page"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("one")));
  EXPECT_TRUE(fs::is_symlink(Path("two")));
}

TEST_F(FileTest, IsCreatedAtTheTargetOfADanglingLink) {
  fs::create_symlink("later", Path("link"));
  Write(Path("link"), "new");
  EXPECT_EQ(Get("later"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("link")));
}

TEST_F(FileTest, RefusesCircularLinks) {
  fs::create_symlink("b", Path("a"));
  fs::create_symlink("a", Path("b"));
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(Path("a")); }), "circle"));
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(Path("a")); }), "circle"));
}

TEST_F(FileTest, RefusesFolders) {
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(folder_.string()); }), "folder"));
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(folder_.string()); }), "folder"));
  EXPECT_EQ(Files(), 0U);
}

TEST_F(FileTest, ReadsARegularFileUpToItsLimit) {
  Put("page", "12345");
  EXPECT_EQ(ReadRegularFile(Path("page"), 5), "12345");
  EXPECT_TRUE(Says(ErrorOf([&] { ReadRegularFile(Path("page"), 4); }), "no more than 4 bytes"));
  EXPECT_TRUE(Says(ErrorOf([&] { ReadRegularFile(Path("none"), 4); }), "no such file"));
  EXPECT_TRUE(Says(ErrorOf([&] { ReadRegularFile(folder_.string(), 4); }), "folder"));
  EXPECT_TRUE(Says(ErrorOf([&] { ReadRegularFile("/dev/zero", 4); }), "device"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { ReadRegularFile(Path("pipe"), 4); }), "pipe"));
}

TEST_F(FileTest, ReportsAMissingFileAndAMissingFolder) {
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(Path("none")); }), "no such file"));
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(Path("none/page")); }), "does not exist"));
}

TEST_F(FileTest, ReportsAFolderThatDisappears) {
  fs::create_directory(Path("gone"));
  const auto output = OpenOutput(Path("gone/page"));
  output->append("x");
  fs::remove_all(Path("gone"));
  EXPECT_TRUE(Says(ErrorOf([&] { output->Commit(); }), "does not exist"));
}

TEST_F(FileTest, KeepsAReadOnlyFile) {
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0444), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { Write(Path("page"), "new"); }), "read-only"));
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(FileTest, KeepsTheFileWhenTheNewOneGrowsTooLarge) {
  Put("page", "old");
  rlimit former;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const rlimit small{1000, former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string message = ErrorOf([&] { Write(Path("page"), std::string(5000, 'x')); });
  setrlimit(RLIMIT_FSIZE, &former);
  EXPECT_TRUE(Says(message, "larger than allowed")) << message;
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U) << "no other file is left";
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGXFSZ), 0);
}

TEST_F(FileTest, ReportsAFullDisk) {
  EXPECT_TRUE(Says(ErrorOf([&] { Write("/dev/full", "x"); }), "disk is full"));
}

TEST_F(FileTest, WritesToDevicesDirectly) {
  Write("/dev/null", "x");
  struct stat status;
  ASSERT_EQ(stat("/dev/null", &status), 0);
  EXPECT_TRUE(S_ISCHR(status.st_mode));
}

// Writes to files that are already open at their current position.
TEST_F(FileTest, WritesThroughToOpenDescriptors) {
  const int file = open(Path("log").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ASSERT_GE(file, 0);
  ASSERT_EQ(write(file, "before ", 7), 7);
  for (const char* folder : {"/dev/fd/", "/proc/self/fd/", "/proc/thread-self/fd/"})
    Write(folder + std::to_string(file), "page ");
  fs::create_symlink("/dev/fd/" + std::to_string(file), Path("link"));
  Write(Path("link"), "link ");
  ASSERT_EQ(write(file, "after", 5), 5);
  close(file);
  EXPECT_EQ(Get("log"), "before page page page link after");
  EXPECT_EQ(Files(), 2U);
}

TEST_F(FileTest, WritesThroughToPipesAndDeletedFiles) {
  std::array<int, 2> ends;
  ASSERT_EQ(pipe(ends.data()), 0);
  Write("/dev/fd/" + std::to_string(ends[1]), "page");
  std::array<char, 10> got;
  EXPECT_EQ(read(ends[0], got.data(), got.size()), 4);
  EXPECT_EQ(std::string(got.data(), 4), "page");
  close(ends[0]);
  close(ends[1]);

  const int file = open(Path("gone").c_str(), O_RDWR | O_CREAT, 0600);
  fs::remove(Path("gone"));
  Write("/proc/self/fd/" + std::to_string(file), "page");
  EXPECT_EQ(pread(file, got.data(), got.size(), 0), 4);
  close(file);
  EXPECT_EQ(Files(), 0U);
}

TEST_F(FileTest, ReportsIncompleteOutputWhenPartWasWritten) {
  const int file = open(Path("part").c_str(), O_WRONLY | O_CREAT, 0600);
  rlimit former;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const rlimit small{1000, former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string message =
      ErrorOf([&] { Write("/dev/fd/" + std::to_string(file), std::string(5000, 'x')); });
  setrlimit(RLIMIT_FSIZE, &former);
  close(file);
  EXPECT_EQ(Get("part").size(), 1000U);
  EXPECT_TRUE(Says(message, "The output is incomplete.")) << message;
  EXPECT_FALSE(Says(message, "Nothing was changed")) << message;
}

TEST_F(FileTest, RefusesClosedDescriptors) {
  EXPECT_NE(ErrorOf([&] { Write("/dev/fd/987", "x"); }), "");
  const int file = open("/dev/null", O_RDONLY);
  EXPECT_NE(ErrorOf([&] { Write("/dev/fd/" + std::to_string(file), "x"); }), "");
  close(file);
}

TEST_F(FileTest, CannotBeReadWithoutPermission) {
  if (geteuid() == 0) GTEST_SKIP() << "root can read every file";
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(Path("page")); }), "may not be read"));
  ASSERT_EQ(chmod(folder_.c_str(), 0500), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(Path("new")); }), "read-only"));
  ASSERT_EQ(chmod(folder_.c_str(), 0700), 0);
}

}  // namespace
}  // namespace kvo::page
