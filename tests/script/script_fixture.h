#pragma once
// What the tests of the script engine start from: a distribution folder, a product folder and a temporary
// folder of their own, the variables that name them, an open log, an empty file list.
#include <gtest/gtest.h>

#include <string>

#include "script/files.h"
#include "script/restart.h"
#include "script/setupinf.h"
#include "script/versionapi.h"
#include "ui/answerer.h"
#include "ui/ui_fixture.h"

class ScriptTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    AppSetVariable("InstallFromDir", mDir.MakeFolder("dist").c_str());
    AppSetVariable("ProgDir", mDir.MakeFolder("prog").c_str());
    AppSetVariable("TempDir", mDir.MakeFolder("temp").c_str());
    AppSetVariable("CurrDir", mDir.Join("dist").c_str());
    AppSetVariable("ProgName", "Setup");
    ASSERT_TRUE(PrepareFileList());
  }
  void TearDown() override {
    SetVersionApi(nullptr);
    SetMoveFileEx(nullptr);
    EXPECT_TRUE(PrepareFileList());
    UiTest::TearDown();
  }

  std::string Dist(const std::string& name) const { return mDir.Join("dist\\" + name); }
  std::string Prog(const std::string& name) const { return mDir.Join("prog\\" + name); }
  // A source file, with its record in the list.
  void ListFile(const std::string& name, const std::string& bytes, int32_t disk = 1, bool hidden = false) {
    mDir.Write("dist\\" + name, bytes);
    EXPECT_TRUE(AddFile(name.c_str(), mDir.Join("prog").c_str(), Dist(name).c_str(), disk,
                        static_cast<uint32_t>(bytes.size()), hidden));
  }
};

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}
// Position of `part`, behind everything when it is missing.
inline size_t PlaceOf(const std::string& text, const std::string& part) {
  const size_t place = text.find(part);
  EXPECT_NE(place, std::string::npos) << part << " is missing in:\n" << text;
  return place;
}
