// Reading and writing files: what is replaced, what is kept, and what is said when it fails.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/page/File.h"

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
  // The English text of the error that `work` ends with; empty when it ends with none.
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

TEST_F(FileTest, AppearsOnlyWithTheCommit) {
  Put("page", "old");
  {
    const auto output = OpenOutput(Path("page"));
    output->append("new");
    EXPECT_EQ(Get("page"), "old");
  }
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(FileTest, MayBeWrittenWhileItIsRead) {
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

TEST_F(FileTest, IsNewWithTheUsualMode) {
  const mode_t mask = umask(027);
  Write(Path("new"), "x");
  umask(mask);
  struct stat status;
  ASSERT_EQ(stat(Path("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(FileTest, IsReplacedWhereASymbolicLinkLeads) {
  fs::create_directory(Path("real"));
  Put("real/page", "old");
  fs::create_symlink("real/page", Path("one"));
  fs::create_symlink(Path("one"), Path("two"));
  Write(Path("two"), "new");
  EXPECT_EQ(Get("real/page"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("one")));
  EXPECT_TRUE(fs::is_symlink(Path("two")));
}

TEST_F(FileTest, IsMadeWhereADanglingLinkLeads) {
  fs::create_symlink("later", Path("link"));
  Write(Path("link"), "new");
  EXPECT_EQ(Get("later"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("link")));
}

TEST_F(FileTest, RefusesLinksInACircle) {
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

TEST_F(FileTest, NamesAMissingFileAndAMissingFolder) {
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(Path("none")); }), "no such file"));
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(Path("none/page")); }), "does not exist"));
}

TEST_F(FileTest, NoticesAFolderThatVanishes) {
  fs::create_directory(Path("gone"));
  const auto output = OpenOutput(Path("gone/page"));
  output->append("x");
  fs::remove_all(Path("gone"));
  EXPECT_TRUE(Says(ErrorOf([&] { output->Commit(); }), "does not exist"));
}

TEST_F(FileTest, LeavesAReadOnlyFileAlone) {
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0444), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { Write(Path("page"), "new"); }), "read-only"));
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U);
}

TEST_F(FileTest, LeavesTheFileAloneWhenTheNewOneGrowsTooLarge) {
  Put("page", "old");
  rlimit former;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  const rlimit small{1000, former.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::string message = ErrorOf([&] { Write(Path("page"), std::string(5000, 'x')); });
  setrlimit(RLIMIT_FSIZE, &former);
  EXPECT_TRUE(Says(message, "larger than allowed")) << message;
  EXPECT_EQ(Get("page"), "old");
  EXPECT_EQ(Files(), 1U) << "nothing is left beside it";
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

TEST_F(FileTest, HasNoRightsWithoutPermission) {
  if (geteuid() == 0) GTEST_SKIP() << "every file may be read by root";
  Put("page", "old");
  ASSERT_EQ(chmod(Path("page").c_str(), 0), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { ReadFile(Path("page")); }), "may not be read"));
  ASSERT_EQ(chmod(folder_.c_str(), 0500), 0);
  EXPECT_TRUE(Says(ErrorOf([&] { OpenOutput(Path("new")); }), "read-only"));
  ASSERT_EQ(chmod(folder_.c_str(), 0700), 0);
}

}  // namespace
}  // namespace kvo::page
