#include "platform/fspath.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/fserror.h"
#include "support/assert_recorder.h"
#include "support/temp_dir.h"

namespace {

std::string Text(const Str& text) { return text.Chars(); }

std::string Picked(const char* path, uint32_t flags) { return Text(FSPath(path).Components(flags)); }

std::string Appended(const char* path, const char* component) {
  FSPath result(path);
  result.Append(component);
  return Text(result.Path());
}

std::string WithExtension(const char* path, const char* ext) {
  FSPath result(path);
  result.SetExtension(ext);
  return Text(result.Path());
}

std::string Shortened(const char* path, int32_t max, const char* reference = nullptr) {
  Str out;
  const FSPath other(reference ? reference : "");
  FSPath(path).Shorten(max, out, reference ? &other : nullptr);
  return Text(out);
}

constexpr uint32_t kVolume = FSPath::compVolume;
constexpr uint32_t kDir = FSPath::compDir;
constexpr uint32_t kBase = FSPath::compBaseName;
constexpr uint32_t kFile = FSPath::compFileName;

// ---- building ----

TEST(FSPathBuild, SuppliesBackslashAndDot) {
  EXPECT_EQ(Text(FSPath("C:", "\\a\\b", "name", "txt").Path()), "C:\\a\\b\\name.txt");
  EXPECT_EQ(Text(FSPath("C:", "\\a\\b\\", "name", ".txt").Path()), "C:\\a\\b\\name.txt");
}

TEST(FSPathBuild, EachComponentMayBeAbsent) {
  EXPECT_EQ(Text(FSPath(nullptr, nullptr, "name", nullptr).Path()), "name");
  EXPECT_EQ(Text(FSPath("C:", nullptr, nullptr, nullptr).Path()), "C:");
  EXPECT_EQ(Text(FSPath(nullptr, "dir", nullptr, nullptr).Path()), "dir\\");
  EXPECT_EQ(Text(FSPath(nullptr, nullptr, nullptr, nullptr).Path()), "");
}

TEST(FSPathBuild, DriveLetterGetsItsColon) {
  EXPECT_EQ(Text(FSPath("C", "\\a", "b", "c").Path()), "C:\\a\\b.c");
}

TEST(FSPathBuild, VolumeRootAndRootedFolderMeetInOneBackslash) {
  EXPECT_EQ(Text(FSPath("C:\\", "\\a", "b", nullptr).Path()), "C:\\a\\b");
  EXPECT_EQ(Text(FSPath("\\\\server\\share", "\\a", "b", nullptr).Path()), "\\\\server\\share\\a\\b");
}

TEST(FSPathBuild, CombinedLengthOf259IsAllowed) {
  const std::string file(252, 'f');
  EXPECT_EQ(FSPath("C:", "\\", file.c_str(), ".txt").Length(), 259);
}

TEST(FSPathBuild, CombinedLengthOf260Asserts) {
  AssertRecorder recorder;
  const std::string file(253, 'f');
  const FSPath path("C:", "\\", file.c_str(), ".txt");
  EXPECT_EQ(
      recorder.Only(),
      "(volume ? Str::Length(volume) : 0) + (dir ? Str::Length(dir) : 0) + (file ? Str::Length(file) : 0) + "
      "(ext ? Str::Length(ext) : 0) < FS::kMaxPathNameLen");
  EXPECT_EQ(path.Length(), 260);  // never cut silently
}

// ---- components ----

TEST(FSPathComponents, VolumeEndsInABackslash) {
  EXPECT_EQ(Picked("C:\\a\\x.txt", kVolume), "C:\\");
  EXPECT_EQ(Picked("\\\\server\\share\\a\\x.txt", kVolume), "\\\\server\\share\\");
}

TEST(FSPathComponents, ParentOfAFileHasNoTrailingBackslash) {
  EXPECT_EQ(Picked("C:\\a\\b\\x.txt", kVolume | kDir), "C:\\a\\b");
  EXPECT_EQ(Picked("\\\\server\\share\\a\\x.txt", kVolume | kDir), "\\\\server\\share\\a");
}

TEST(FSPathComponents, ParentOfAFileInARootIsTheRoot) {
  EXPECT_EQ(Picked("C:\\x.txt", kVolume | kDir), "C:\\");
  EXPECT_EQ(Picked("\\\\server\\share\\x.txt", kVolume | kDir), "\\\\server\\share\\");
}

TEST(FSPathComponents, FileNameWithAndWithoutExtension) {
  EXPECT_EQ(Picked("C:\\a\\x.tar.gz", kFile), "x.tar.gz");
  EXPECT_EQ(Picked("C:\\a\\x.tar.gz", kBase), "x.tar");
  EXPECT_EQ(Picked("C:\\a\\", kFile), "");
}

TEST(FSPathComponents, FolderAlone) {
  EXPECT_EQ(Picked("C:\\a\\b\\x.txt", kDir), "\\a\\b");
  EXPECT_EQ(Picked("C:\\x.txt", kDir), "");
  EXPECT_EQ(Picked("a\\x.txt", kDir), "a");
}

TEST(FSPathComponents, FolderWithNameKeepsItsBackslash) {
  EXPECT_EQ(Picked("C:\\a\\b\\x.txt", kDir | kFile), "\\a\\b\\x.txt");
  EXPECT_EQ(Picked("C:\\a\\b\\x.txt", kDir | kBase), "\\a\\b\\x");
}

TEST(FSPathComponents, AllTogetherIsThePath) {
  EXPECT_EQ(Picked("C:\\a\\b\\x.txt", kVolume | kDir | kFile), "C:\\a\\b\\x.txt");
}

TEST(FSPathComponents, WithoutVolumeTheResultIsRooted) {
  EXPECT_EQ(Picked("\\a\\x.txt", kVolume | kDir), "\\a");
}

TEST(FSPathComponents, BothNameFlagsAssertAndTheBaseNameWins) {
  AssertRecorder recorder;
  EXPECT_EQ(Picked("C:\\a\\x.txt", kBase | kFile), "x");
  EXPECT_EQ(recorder.Only(), "! ((flags & compBaseName) && (flags & compFileName))");
}

TEST(FSPathComponents, EmptyPathAsserts) {
  AssertRecorder recorder;
  Str out("left over");
  FSPath().GetComponents(kFile, out);
  EXPECT_EQ(recorder.Only(), "mPath.Length() > 0");
  EXPECT_EQ(Text(out), "");
}

TEST(FSPathComponents, OutMayBeThePathItself) {
  FSPath path("C:\\a\\b\\x.txt");
  path.GetComponents(kVolume | kDir, path.mPath);
  EXPECT_EQ(Text(path.Path()), "C:\\a\\b");
}

TEST(FSPathVolumeName, HasNoTrailingBackslash) {
  Str name;
  FSPath("C:\\a\\x.txt").GetVolumeName(name);
  EXPECT_EQ(Text(name), "C:");
  FSPath("C:\\").GetVolumeName(name);
  EXPECT_EQ(Text(name), "C:");
}

TEST(FSPathVolumeName, OfANetworkPathIsServerAndShare) {
  Str name;
  FSPath("\\\\server\\share\\a\\x.txt").GetVolumeName(name);
  EXPECT_EQ(Text(name), "\\\\server\\share");
  FSPath("\\\\server").GetVolumeName(name);
  EXPECT_EQ(Text(name), "\\\\server");
}

// ---- joining ----

TEST(FSPathAppend, OneBackslashInEveryCombination) {
  EXPECT_EQ(Appended("C:\\a", "b"), "C:\\a\\b");
  EXPECT_EQ(Appended("C:\\a\\", "b"), "C:\\a\\b");
  EXPECT_EQ(Appended("C:\\a", "\\b"), "C:\\a\\b");
  EXPECT_EQ(Appended("C:\\a\\", "\\b"), "C:\\a\\b");
  EXPECT_EQ(Appended("C:\\", "b"), "C:\\b");
}

TEST(FSPathAppend, EmptyComponentAssertsAndChangesNothing) {
  AssertRecorder recorder;
  EXPECT_EQ(Appended("C:\\a", ""), "C:\\a");
  EXPECT_EQ(recorder.Only(), "Str::Length(component) > 0");
}

TEST(FSPathAppend, PartOfThePathItself) {
  FSPath path("C:\\ab");
  path.Append(path.Path().Chars() + 3);
  EXPECT_EQ(Text(path.Path()), "C:\\ab\\ab");
}

TEST(FSPathJoin, EitherSideMayBeEmpty) {
  EXPECT_EQ(Text(JoinPath("C:\\a", "b")), "C:\\a\\b");
  EXPECT_EQ(Text(JoinPath("C:\\a\\", "\\b")), "C:\\a\\b");
  EXPECT_EQ(Text(JoinPath("", "b")), "b");
  EXPECT_EQ(Text(JoinPath("C:\\a", "")), "C:\\a");
}

// ---- full paths ----

class CurrentFolder {
 public:
  explicit CurrentFolder(const std::string& folder) {
    GetCurrentDirectoryA(sizeof mFormer, mFormer);
    EXPECT_TRUE(SetCurrentDirectoryA(folder.c_str()));
  }
  ~CurrentFolder() { SetCurrentDirectoryA(mFormer); }

 private:
  char mFormer[MAX_PATH] = "";
};

TEST(FSPathMakeFull, RelativeToTheCurrentFolder) {
  TempDir dir;
  CurrentFolder current(dir.Path());
  FSPath path("sub\\..\\x.txt");
  ASSERT_TRUE(path.MakeFull());
  EXPECT_EQ(Text(path.Path()), dir.Join("x.txt"));
}

TEST(FSPathMakeFull, EmptyPathIsTheCurrentFolder) {
  TempDir dir;
  CurrentFolder current(dir.Path());
  FSPath path;
  ASSERT_TRUE(path.MakeFull());
  EXPECT_EQ(Text(path.Path()), dir.Path());
}

TEST(FSPathMakeFull, FullPathStays) {
  FSPath path("C:\\a\\b.txt");
  ASSERT_TRUE(path.MakeFull());
  EXPECT_EQ(Text(path.Path()), "C:\\a\\b.txt");
}

TEST(FSPathMakeFull, TooLongResultFailsAndKeepsThePath) {
  FS::SetLastError(FS::fsErrNone);
  const std::string name(260, 'n');
  FSPath path(name.c_str());
  EXPECT_FALSE(path.MakeFull());
  EXPECT_EQ(FS::LastError(), FS::fsErrNotFound);
  EXPECT_EQ(Text(path.Path()), name);
}

TEST(FSPathIsFull, DriveWithBackslashAndNetworkPathsOnly) {
  EXPECT_TRUE(FSPath("C:\\").IsFullPath());
  EXPECT_TRUE(FSPath("z:\\a").IsFullPath());
  EXPECT_TRUE(FSPath("\\\\server\\share").IsFullPath());
  EXPECT_TRUE(FSPath("\\\\").IsFullPath());
  EXPECT_FALSE(FSPath("C:").IsFullPath());
  EXPECT_FALSE(FSPath("C:a").IsFullPath());
  EXPECT_FALSE(FSPath("1:\\a").IsFullPath());
  EXPECT_FALSE(FSPath("\\a").IsFullPath());
  EXPECT_FALSE(FSPath("a\\b").IsFullPath());
  EXPECT_FALSE(FSPath("").IsFullPath());
}

// ---- extensions ----

TEST(FSPathExtension, HasOneOnlyBehindTheLastBackslash) {
  EXPECT_TRUE(FSPath("C:\\a\\x.txt").HasExtension());
  EXPECT_TRUE(FSPath("x.y").HasExtension());
  EXPECT_FALSE(FSPath("C:\\a.b\\x").HasExtension());
  EXPECT_FALSE(FSPath("x").HasExtension());
  EXPECT_FALSE(FSPath("").HasExtension());
}

TEST(FSPathExtension, ANameThatEndsInADotHasNone) { EXPECT_FALSE(FSPath("C:\\a\\name.").HasExtension()); }

TEST(FSPathExtension, GetIncludesTheDot) {
  Str ext;
  EXPECT_TRUE(FSPath("C:\\a\\x.tar.gz").GetExtension(ext));
  EXPECT_EQ(Text(ext), ".gz");
}

TEST(FSPathExtension, GetWithoutOneIsEmptyAndFalse) {
  Str ext("left over");
  EXPECT_FALSE(FSPath("C:\\a.b\\x").GetExtension(ext));
  EXPECT_EQ(Text(ext), "");
}

TEST(FSPathExtension, SetReplacesTheOldOne) { EXPECT_EQ(WithExtension("arial.ttf", ".fot"), "arial.fot"); }

TEST(FSPathExtension, SetAppendsWhereOnlyAFolderHasADot) {
  EXPECT_EQ(WithExtension("C:\\v1.2\\arial", ".fot"), "C:\\v1.2\\arial.fot");
}

TEST(FSPathExtension, SetTakesTheTrailingDotAway) { EXPECT_EQ(WithExtension("arial.", ".fot"), "arial.fot"); }

TEST(FSPathExtension, SetWithoutOneRemoves) {
  EXPECT_EQ(WithExtension("C:\\a\\arial.ttf", nullptr), "C:\\a\\arial");
  EXPECT_EQ(WithExtension("C:\\a\\arial", nullptr), "C:\\a\\arial");
}

TEST(FSPathExtension, SetChecksItsForm) {
  for (const char* bad : {"", ".", "fot"}) {
    AssertRecorder recorder;
    WithExtension("arial.ttf", bad);
    EXPECT_EQ(recorder.Only(),
              "(extension == NULL) || ((Str::Length(extension) >= 2) && (extension[0] == '.'))")
        << bad;
  }
}

TEST(FSPathExtension, BadFormIsSetAllTheSame) {
  AssertRecorder recorder;
  EXPECT_EQ(WithExtension("arial.ttf", "fot"), "arialfot");
  EXPECT_EQ(WithExtension("arial.ttf", "."), "arial.");
  EXPECT_EQ(WithExtension("arial.ttf", ""), "arial");
}

// ---- display form ----

TEST(FSPathShorten, PathThatFitsStays) { EXPECT_EQ(Shortened("C:\\a\\file.txt", 13), "C:\\a\\file.txt"); }

TEST(FSPathShorten, FoldersGoOneByOneFromTheLeft) {
  constexpr char path[] = "C:\\aaaaa\\bbbbb\\ccccc\\file.txt";
  EXPECT_EQ(Shortened(path, 28), "C:\\...\\bbbbb\\ccccc\\file.txt");
  EXPECT_EQ(Shortened(path, 26), "C:\\...\\ccccc\\file.txt");
  EXPECT_EQ(Shortened(path, 20), "C:\\...\\file.txt");
  EXPECT_EQ(Shortened(path, 14), "C:\\file.txt");
  EXPECT_EQ(Shortened(path, 11), "C:\\file.txt");
}

TEST(FSPathShorten, OneLetterFolders) {
  // The first step makes the path longer; the later ones count.
  EXPECT_EQ(Shortened("C:\\a\\b\\c\\file.txt", 16), "C:\\...\\file.txt");
}

TEST(FSPathShorten, NetworkPathKeepsItsServer) {
  constexpr char path[] = "\\\\server\\share\\folder\\file.txt";
  EXPECT_EQ(Shortened(path, 29), "\\\\server\\...\\folder\\file.txt");
  EXPECT_EQ(Shortened(path, 27), "\\\\server\\...\\file.txt");
  EXPECT_EQ(Shortened(path, 18), "\\\\server\\file.txt");
  EXPECT_EQ(Shortened(path, 16), "file.txt");
}

TEST(FSPathShorten, FallsBackToTheFileName) {
  EXPECT_EQ(Shortened("C:\\folder\\twelve12.txt", 12), "twelve12.txt");
}

TEST(FSPathShorten, CutsALongFileName) {
  EXPECT_EQ(Shortened("C:\\folder\\a-name-of-20-chars.x", 11), "a-name- ...");
  EXPECT_EQ(FSPath("C:\\folder\\a-name-of-20-chars.x").FileName().Length(), 20);
}

TEST(FSPathShorten, NothingToCollapse) {
  EXPECT_EQ(Shortened("\\\\a-server-of-20-chars", 14), "");  // it has no file name
  EXPECT_EQ(Shortened("a-relative-name-alone", 14), "a-relative ...");
}

TEST(FSPathShorten, ReferenceInTheSameFolderLeavesTheName) {
  EXPECT_EQ(Shortened("C:\\Folder\\file.txt", 40, "c:\\FOLDER\\other.txt"), "file.txt");
}

TEST(FSPathShorten, ReferenceInAnotherFolderChangesNothing) {
  EXPECT_EQ(Shortened("C:\\Folder\\file.txt", 40, "C:\\other\\other.txt"), "C:\\Folder\\file.txt");
}

TEST(FSPathShorten, MaximumOfTenAsserts) {
  AssertRecorder recorder;
  EXPECT_EQ(Shortened("C:\\folder\\longer.txt", 10), "longer.txt");
  EXPECT_EQ(recorder.Only(), "max > 10");
}

TEST(FSPathShorten, NegativeMaximumAssertsAndEnds) {
  AssertRecorder recorder;
  EXPECT_EQ(Shortened("C:\\folder\\longer.txt", -5), " ...");
  EXPECT_EQ(recorder.Only(), "max > 10");
}

}  // namespace
