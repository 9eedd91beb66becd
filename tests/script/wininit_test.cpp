#include "script/wininit.h"

#include <gtest/gtest.h>

namespace {

TEST(WinInit, AnEmptyListGetsTheHeader) {
  EXPECT_EQ(AddWinInitRename("", "C:\\A.DLL", "C:\\~A.DLL"), "[Rename]\r\nC:\\A.DLL=C:\\~A.DLL\r\n");
}

TEST(WinInit, TheLineGoesDirectlyBelowTheHeader) {
  EXPECT_EQ(AddWinInitRename("[Rename]\r\nX=Y\r\n", "A", "B"), "[Rename]\r\nA=B\r\nX=Y\r\n");
  EXPECT_EQ(AddWinInitRename("[Other]\r\nK=V\r\n[Rename]\r\nX=Y\r\n[Last]\r\n", "A", "B"),
            "[Other]\r\nK=V\r\n[Rename]\r\nA=B\r\nX=Y\r\n[Last]\r\n");
}

TEST(WinInit, AListWithoutTheHeaderGetsItAtItsEnd) {
  EXPECT_EQ(AddWinInitRename("[Other]\r\nK=V\r\n", "A", "B"), "[Other]\r\nK=V\r\n[Rename]\r\nA=B\r\n");
  EXPECT_EQ(AddWinInitRename("[Other]\r\nK=V", "A", "B"), "[Other]\r\nK=V\r\n[Rename]\r\nA=B\r\n");
}

TEST(WinInit, AHeaderWithoutALineEndGetsOne) {
  EXPECT_EQ(AddWinInitRename("[Rename]", "A", "B"), "[Rename]\r\nA=B\r\n");
}

TEST(WinInit, TheHeaderIsFoundInAnyCaseAndLineEnd) {
  EXPECT_EQ(AddWinInitRename("[rename] \nX=Y\n", "A", "B"), "[rename] \nA=B\r\nX=Y\n");
}

TEST(WinInit, TheHeadersTextInsideALineIsNoHeader) {
  EXPECT_EQ(AddWinInitRename("K=[Rename]\r\n", "A", "B"), "K=[Rename]\r\n[Rename]\r\nA=B\r\n");
}

TEST(WinInit, NoDestinationIsWrittenAsNul) {
  EXPECT_EQ(AddWinInitRename("", "", "B"), "[Rename]\r\nNUL=B\r\n");
}

TEST(WinInit, ShortNames) {
  for (const char* name : {"A", "ABCDEFGH", "ABCDEFGH.DLL", "A.B", "A."})
    EXPECT_TRUE(IsShortName(name)) << name;
  for (const char* name : {"", "ABCDEFGHI", "A.HTML", "A B.DLL", "A.B.C", ".DLL"})
    EXPECT_FALSE(IsShortName(name)) << name;
}

}  // namespace
