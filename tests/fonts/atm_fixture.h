#pragma once
// A stand-in for Adobe Type Manager in the system folder for the length of a test.
#include <string>
#include <vector>

#include "font_fixture.h"
#include "support/process.h"

class AtmTest : public FontTest {
 protected:
  void SetUp() override {
    FontTest::SetUp();
    mAnswers = mDir.Write("atm.ini", "[ATM]\r\n");
    SetEnvironmentVariableA("VT_ATM", mAnswers.c_str());
    Install("ATM32.dll");
  }
  void TearDown() override {
    Install(nullptr);
    SetEnvironmentVariableA("VT_ATM", nullptr);
    FontTest::TearDown();
  }

  // Puts the stand-in into the system folder under a name, and under no other; null: nowhere.
  void Install(const char* name) {
    for (const std::string& file : mFiles) EXPECT_TRUE(DeleteTree(file)) << file;
    mFiles.clear();
    if (name) PutFile(name, ReadWholeFile(HelperPath("atm.dll")));
  }
  // Another file of the system folder, gone with the next Install.
  void PutFile(const std::string& name, const std::string& bytes) {
    char folder[MAX_PATH] = "";
    GetSystemDirectoryA(folder, sizeof folder);
    mFiles.push_back(std::string(folder) + "\\" + name);
    WriteWholeFile(mFiles.back(), bytes);
  }
  void Answer(const std::string& section, const char* key, const char* value) const {
    EXPECT_TRUE(WritePrivateProfileStringA(section.c_str(), key, value, mAnswers.c_str()));
  }
  // `style` as the library counts: 1 italic, 2 bold.
  void InstallFont(const std::string& windowsName, int style, const std::string& pfb,
                   const std::string& pfm) const {
    const std::string section = windowsName + "," + std::to_string(style);
    Answer(section, "pfb", pfb.c_str());
    Answer(section, "pfm", pfm.c_str());
  }
  // The calls recorded since the test's start.
  std::string Calls() const { return mDir.Has("atm.ini.log") ? mDir.Read("atm.ini.log") : ""; }

 private:
  std::string mAnswers;
  std::vector<std::string> mFiles;
};
