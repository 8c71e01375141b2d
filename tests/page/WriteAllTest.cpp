// Writes several files: all or none.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "document/page/File.h"

namespace kvo::page {
namespace {

namespace fs = std::filesystem;

class WriteAllTest : public ::testing::Test {
 protected:
  WriteAllTest() {
    std::string name = (fs::temp_directory_path() / "kvo-test-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
  }
  ~WriteAllTest() override { fs::remove_all(folder_); }

  std::string At(const std::string& file) const { return (folder_ / file).string(); }
  void Put(const std::string& file, const std::string& bytes) const {
    std::ofstream(At(file)) << bytes;
  }
  std::string Bytes(const std::string& file) const { return ReadFile(At(file)); }
  std::size_t Count() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
  }

  fs::path folder_;
};

TEST_F(WriteAllTest, WritesAllFiles) {
  Put("a", "old a");
  fs::permissions(At("a"), fs::perms::owner_all);
  fs::create_symlink("a", At("link"));
  WriteAll({{At("link"), "new a", "old a"}, {At("b"), "new b"}});
  EXPECT_EQ(Bytes("a"), "new a");
  EXPECT_EQ(fs::status(At("a")).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(fs::is_symlink(At("link")));
  EXPECT_EQ(Bytes("b"), "new b");
  EXPECT_EQ(Count(), 3U);
}

TEST_F(WriteAllTest, WritesNoneWhenOneCannotBeWritten) {
  Put("a", "old a");
  EXPECT_THROW(WriteAll({{At("a"), "new a"}, {At("gone/b"), "new b"}}), FileError);
  EXPECT_EQ(Bytes("a"), "old a");
  EXPECT_EQ(Count(), 1U);
}

TEST_F(WriteAllTest, WritesNoneWhenOneHasChanged) {
  Put("a", "old a");
  Put("b", "changed");
  try {
    WriteAll({{At("a"), "new a", "old a"}, {At("b"), "new b", "old b"}});
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.File(), At("b"));
  }
  EXPECT_EQ(Bytes("a"), "old a");
  EXPECT_EQ(Bytes("b"), "changed");
  EXPECT_EQ(Count(), 2U);
}

// A device is written last and fails then.
TEST_F(WriteAllTest, PutsFilesBackWhenALaterOneFails) {
  Put("a", "old a");
  const ino_t inode = [this] {
    struct stat status {};
    EXPECT_EQ(stat(At("a").c_str(), &status), 0);
    return status.st_ino;
  }();
  EXPECT_THROW(WriteAll({{At("a"), "new a"}, {At("new"), "new"}, {"/dev/full", "x"}}), FileError);
  EXPECT_EQ(Bytes("a"), "old a");
  struct stat status {};
  ASSERT_EQ(stat(At("a").c_str(), &status), 0);
  EXPECT_EQ(status.st_ino, inode);
  EXPECT_EQ(Count(), 1U);
}

TEST_F(WriteAllTest, GroupsFlushManyFilesAndKeepThemUntilTheirCommit) {
  constexpr int kFiles = 20;
  std::vector<std::unique_ptr<Output>> outputs;
  std::vector<Output*> all;
  for (int i = 0; i < kFiles; ++i) {
    const std::string name = std::to_string(i);
    Put(name, "old");
    outputs.push_back(OpenOutput(At(name)));
    outputs.back()->append("new " + name);
    all.push_back(outputs.back().get());
  }
  FileGroup group;
  group.Flush(all);
  for (int i = 0; i < kFiles; ++i) {
    EXPECT_EQ(Bytes(std::to_string(i)), "old");
    if (i % 2 == 0) all[static_cast<std::size_t>(i)]->Commit();
  }
  group.Finish();
  outputs.clear();
  for (int i = 0; i < kFiles; ++i)
    EXPECT_EQ(Bytes(std::to_string(i)), i % 2 == 0 ? "new " + std::to_string(i) : "old");
  EXPECT_EQ(Count(), static_cast<std::size_t>(kFiles));
}

}  // namespace
}  // namespace kvo::page
