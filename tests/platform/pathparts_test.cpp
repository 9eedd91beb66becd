// The path rules as pure text functions, above all what they do with double-byte characters.
#include "platform/pathparts.h"

#include <gtest/gtest.h>

namespace {

using namespace PathText;

// As in the Japanese code page.
bool JapaneseLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// One character whose second byte has the backslash's code.
constexpr char kHyo[] = "\x95\x5C";

TEST(PathPartsFind, SecondBytesAreNoCharacters) {
  EXPECT_EQ(FindCharacter("a\x83\x5F_b", '_', 0, JapaneseLead), 3u);
  EXPECT_EQ(FindCharacter("a\x83\x5F", '_', 0, JapaneseLead), kNone);
  EXPECT_EQ(FindCharacter("a_b_", '_', 2, nullptr), 3u);
}

TEST(PathPartsSplit, DrivePath) {
  const Parts parts = Split("C:\\a\\b\\name.tar.gz", nullptr);
  EXPECT_EQ(parts.volume, "C:");
  EXPECT_EQ(parts.dir, "\\a\\b\\");
  EXPECT_EQ(parts.name, "name.tar");
  EXPECT_EQ(parts.ext, ".gz");
}

TEST(PathPartsSplit, DriveRelativeAndRelativePaths) {
  EXPECT_EQ(Split("C:x.txt", nullptr).volume, "C:");
  EXPECT_EQ(Split("C:x.txt", nullptr).dir, "");
  EXPECT_EQ(Split("C:x.txt", nullptr).name, "x");
  EXPECT_EQ(Split("sub\\x", nullptr).volume, "");
  EXPECT_EQ(Split("sub\\x", nullptr).dir, "sub\\");
  EXPECT_EQ(Split("sub\\x", nullptr).ext, "");
}

TEST(PathPartsSplit, ADotInAFolderIsNoExtension) {
  const Parts parts = Split("C:\\v1.2\\readme", nullptr);
  EXPECT_EQ(parts.name, "readme");
  EXPECT_EQ(parts.ext, "");
}

TEST(PathPartsSplit, ADotAtTheEndIsAnExtensionOfItsOwn) {
  EXPECT_EQ(Split("name.", nullptr).name, "name");
  EXPECT_EQ(Split("name.", nullptr).ext, ".");
}

TEST(PathPartsSplit, NetworkPath) {
  const Parts parts = Split("\\\\server\\share\\dir\\f.txt", nullptr);
  EXPECT_EQ(parts.volume, "\\\\server\\share");
  EXPECT_EQ(parts.dir, "\\dir\\");
  EXPECT_EQ(parts.name, "f");
  EXPECT_EQ(parts.ext, ".txt");
}

TEST(PathPartsSplit, NetworkPathWithoutFolderIsAllVolume) {
  EXPECT_EQ(Split("\\\\server", nullptr).volume, "\\\\server");
  EXPECT_EQ(Split("\\\\server\\share", nullptr).volume, "\\\\server\\share");
  EXPECT_EQ(Split("\\\\server\\share\\", nullptr).volume, "\\\\server\\share");
  EXPECT_EQ(Split("\\\\server\\share\\", nullptr).dir, "\\");
  EXPECT_EQ(Split("\\\\", nullptr).volume, "\\\\");
}

TEST(PathPartsSplit, NoDriveIsLookedForBehindAShare) {
  const Parts parts = Split("\\\\s\\t\\:x", nullptr);
  EXPECT_EQ(parts.volume, "\\\\s\\t");
  EXPECT_EQ(parts.dir, "\\");
  EXPECT_EQ(parts.name, ":x");
}

TEST(PathPartsSplit, ForwardSlashesSeparateNothing) {
  const Parts parts = Split("C:/a/b.c", nullptr);
  EXPECT_EQ(parts.dir, "");
  EXPECT_EQ(parts.name, "/a/b");
}

TEST(PathPartsSplit, EmptyText) {
  const Parts parts = Split("", nullptr);
  EXPECT_TRUE(parts.volume.empty() && parts.dir.empty() && parts.name.empty() && parts.ext.empty());
}

TEST(PathPartsSplit, SecondByteOfACharacterIsNoBackslash) {
  const std::string path = std::string("C:\\") + kHyo + "x\\" + kHyo;
  const Parts parts = Split(path, JapaneseLead);
  EXPECT_EQ(parts.dir, std::string("\\") + kHyo + "x\\");
  EXPECT_EQ(parts.name, kHyo);
  // The same bytes in a code page without double-byte characters.
  EXPECT_EQ(Split(path, nullptr).name, "");
}

TEST(PathPartsSplit, LeadByteAtTheVeryEndStandsForItself) {
  EXPECT_EQ(Split("C:\\a\\\x95", JapaneseLead).name, "\x95");
}

TEST(PathPartsEnd, BackslashThatEndsACharacterIsNone) {
  EXPECT_TRUE(EndsInBackslash("a\\", JapaneseLead));
  EXPECT_FALSE(EndsInBackslash(kHyo, JapaneseLead));
  EXPECT_TRUE(EndsInBackslash(kHyo, nullptr));
  EXPECT_FALSE(EndsInBackslash("", nullptr));
}

TEST(PathPartsAppend, DoubleByteNameBeforeTheJoint) {
  std::string path = kHyo;
  Append(path, "b", JapaneseLead);
  EXPECT_EQ(path, std::string(kHyo) + "\\b");
}

TEST(PathPartsBuild, DoubleByteFolderGetsItsBackslash) {
  EXPECT_EQ(Build("C:", std::string("\\") + kHyo, "f", "", JapaneseLead), std::string("C:\\") + kHyo + "\\f");
}

TEST(PathPartsExtension, DoubleByteNameBehindTheDotsFolder) {
  EXPECT_EQ(FindExtension(std::string("a.b") + kHyo, JapaneseLead), 1u);
  EXPECT_EQ(FindExtension(std::string("a.b") + kHyo, nullptr), kNone);
}

TEST(PathPartsShorten, NeverCutsInsideACharacter) {
  std::string name;
  for (int i = 0; i < 10; i++) name += kHyo;
  const std::string path = "C:\\folder\\" + name;
  // Seven bytes would end in the middle of the fourth character.
  EXPECT_EQ(Shorten(path, name, 11, JapaneseLead), name.substr(0, 6) + " ...");
}

TEST(PathPartsShorten, SmallMaximumKeepsOnlyTheMark) {
  EXPECT_EQ(Shorten("C:\\longer", "longer", 3, nullptr), " ...");
}

}  // namespace
