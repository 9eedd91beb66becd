#include "platform/fsdirit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/unix_tool.h"
#include "support/assert_recorder.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "support/wait.h"

namespace {

using FS::DirIterator;
constexpr uint32_t kFiles = DirIterator::modeFiles;
constexpr uint32_t kDirs = DirIterator::modeDirs;

// What the iterator yields, relative to the folder; folders end in a backslash. In the iterator's order.
std::vector<std::string> Walk(const TempDir& dir, uint32_t mode, bool recursive) {
  std::vector<std::string> result;
  DirIterator entries(dir.Path().c_str(), mode, recursive);
  Str path;
  bool isDir = false;
  while (entries.Next(path, isDir)) {
    const std::string full = path.Chars();
    EXPECT_EQ(full.substr(0, dir.Path().size() + 1), dir.Path() + "\\");
    result.push_back(full.substr(dir.Path().size() + 1) + (isDir ? "\\" : ""));
  }
  return result;
}

std::vector<std::string> Sorted(std::vector<std::string> list) {
  std::sort(list.begin(), list.end());
  return list;
}

ptrdiff_t IndexOf(const std::vector<std::string>& list, const std::string& entry) {
  const auto found = std::find(list.begin(), list.end(), entry);
  EXPECT_NE(found, list.end()) << entry;
  return found - list.begin();
}

using List = std::vector<std::string>;

class FSDirIterator : public testing::Test {
 protected:
  FSDirIterator() {
    mDir.Write("a.txt", "");
    mDir.Write("noext", "");
    mDir.Write("s\\b.txt", "");
    mDir.Write("s\\u\\c.txt", "");
    mDir.MakeFolder("e");
  }
  TempDir mDir;
};

TEST_F(FSDirIterator, FilesOfOneFolder) {
  EXPECT_EQ(Sorted(Walk(mDir, kFiles, false)), (List{"a.txt", "noext"}));
}

TEST_F(FSDirIterator, FoldersOfOneFolderAreTheDirectOnes) {
  EXPECT_EQ(Sorted(Walk(mDir, kDirs, false)), (List{"e\\", "s\\"}));
}

TEST_F(FSDirIterator, FilesAndFoldersOfOneFolder) {
  EXPECT_EQ(Sorted(Walk(mDir, kFiles | kDirs, false)), (List{"a.txt", "e\\", "noext", "s\\"}));
}

TEST_F(FSDirIterator, FilesOfTheWholeTree) {
  EXPECT_EQ(Sorted(Walk(mDir, kFiles, true)), (List{"a.txt", "noext", "s\\b.txt", "s\\u\\c.txt"}));
}

TEST_F(FSDirIterator, FoldersOfTheWholeTree) {
  EXPECT_EQ(Sorted(Walk(mDir, kDirs, true)), (List{"e\\", "s\\", "s\\u\\"}));
}

TEST_F(FSDirIterator, EverythingOnce) {
  EXPECT_EQ(Sorted(Walk(mDir, kFiles | kDirs, true)),
            (List{"a.txt", "e\\", "noext", "s\\", "s\\b.txt", "s\\u\\", "s\\u\\c.txt"}));
}

TEST_F(FSDirIterator, FolderComesAfterAllItsContents) {
  const List list = Walk(mDir, kFiles | kDirs, true);
  EXPECT_LT(IndexOf(list, "s\\b.txt"), IndexOf(list, "s\\"));
  EXPECT_LT(IndexOf(list, "s\\u\\c.txt"), IndexOf(list, "s\\u\\"));
  EXPECT_LT(IndexOf(list, "s\\u\\"), IndexOf(list, "s\\"));
  // And directly after them: nothing of another folder comes between.
  const ptrdiff_t first = std::min(IndexOf(list, "s\\b.txt"), IndexOf(list, "s\\u\\c.txt"));
  EXPECT_EQ(IndexOf(list, "s\\") - first, 3);
}

TEST_F(FSDirIterator, PathWithTrailingBackslash) {
  DirIterator entries((mDir.Join("s") + "\\").c_str(), kFiles, false);
  Str path;
  bool isDir = true;
  ASSERT_TRUE(entries.Next(path, isDir));
  EXPECT_EQ(std::string(path.Chars()), mDir.Join("s\\b.txt"));
  EXPECT_FALSE(isDir);
}

TEST_F(FSDirIterator, HiddenEntriesAreListed) {
  SetFileAttributesA(mDir.Join("a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_EQ(Sorted(Walk(mDir, kFiles, false)), (List{"a.txt", "noext"}));
}

TEST_F(FSDirIterator, EachFolderMayBeRemovedWhenItComes) {
  DirIterator entries(mDir.Path().c_str(), kFiles | kDirs, true);
  Str path;
  bool isDir = false;
  while (entries.Next(path, isDir))
    EXPECT_TRUE(isDir ? RemoveDirectoryA(path) : DeleteFileA(path)) << path.Chars();
  EXPECT_TRUE(NamesIn(mDir.Path()).empty());
}

TEST_F(FSDirIterator, MayBeDroppedInTheMiddle) {
  DirIterator entries(mDir.Path().c_str(), kFiles, true);
  Str path;
  bool isDir = false;
  EXPECT_TRUE(entries.Next(path, isDir));
  // The leak check of every test sees to it that no search stays open.
}

TEST_F(FSDirIterator, NextAfterTheEndAsserts) {
  DirIterator entries(mDir.Join("e").c_str(), kFiles, false);
  Str path;
  bool isDir = false;
  EXPECT_FALSE(entries.Next(path, isDir));
  AssertRecorder recorder;
  EXPECT_FALSE(entries.Next(path, isDir));
  EXPECT_EQ(recorder.Only(), "!mDone");
}

TEST_F(FSDirIterator, ModeWithoutFilesAndFoldersAsserts) {
  for (const uint32_t mode : {0u, 4u}) {
    AssertRecorder recorder;
    DirIterator entries(mDir.Path().c_str(), mode, false);
    EXPECT_EQ(recorder.Only(), "mode & modeFiles || mode & modeDirs");
    Str path;
    bool isDir = false;
    EXPECT_FALSE(entries.Next(path, isDir));
  }
}

TEST(FSDirIteratorPath, NullAssertsAndYieldsNothing) {
  AssertRecorder recorder;
  DirIterator entries(nullptr, kFiles, false);
  EXPECT_EQ(recorder.Only(), "path");
  Str path;
  bool isDir = false;
  EXPECT_FALSE(entries.Next(path, isDir));
}

TEST(FSDirIteratorPath, EmptyOneYieldsNothing) {
  DirIterator entries("", kFiles | kDirs, true);
  Str path;
  bool isDir = false;
  EXPECT_FALSE(entries.Next(path, isDir));
}

TEST(FSDirIteratorPath, MissingFolderYieldsNothing) {
  TempDir dir;
  DirIterator entries(dir.Join("none").c_str(), kFiles | kDirs, true);
  Str path;
  bool isDir = false;
  EXPECT_FALSE(entries.Next(path, isDir));
}

TEST(FSDirIteratorDepth, ThirtyLevels) {
  TempDir dir;
  std::string below;
  for (int i = 0; i < 30; i++) below += (i ? "\\d" : "d");
  dir.Write(below + "\\f", "");
  const List list = Walk(dir, kFiles | kDirs, true);
  ASSERT_EQ(list.size(), 31u);
  EXPECT_EQ(list.front(), below + "\\f");
  EXPECT_EQ(list.back(), "d\\");
}

TEST(FSDirIteratorLink, IsListedAsAFolderAndNotEntered) {
  TempDir dir;
  TempDir outside;
  outside.Write("keep.txt", "");
  const std::string base = UnixPath(dir.Path());
  if (base.empty()) GTEST_SKIP() << "no way to make a link here";
  ASSERT_TRUE(StartUnix("ln -s " + UnixPath(outside.Path()) + " " + base + "/link"));
  ASSERT_TRUE(WaitUntil([&] { return dir.Has("link"); }));
  EXPECT_EQ(Walk(dir, kFiles | kDirs, true), List{"link\\"});
  EXPECT_EQ(Walk(dir, kFiles, true), List{});
  ASSERT_TRUE(StartUnix("rm -f " + base + "/link"));
  EXPECT_TRUE(WaitUntil([&] { return !dir.Has("link"); }));
}

}  // namespace
