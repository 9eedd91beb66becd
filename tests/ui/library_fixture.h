#pragma once
// A folder for language libraries that the variables of the run name.
#include <string>

#include "ui/language_file.h"
#include "ui/ui_fixture.h"

// Asserted for a library of no or of several languages.
inline constexpr char kSeveral[] = "Version resource contains more than one language.";

inline constexpr int32_t kFrench = 0x040c;
inline constexpr int32_t kGerman = 0x0407;

// The test program's own language, as the setup program's.
inline constexpr int32_t kOwn = kFrench;

class LibraryTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    mFolder = mDir.MakeFolder("libs");
    AppSetVariable("CurrDir", mFolder.c_str());
  }
  // A library of one language in the folder; its string 258 is "Lib <file name>".
  void AddLibrary(const std::string& name, uint16_t language) {
    MakeLanguageFile(mFolder + "\\" + name, {language}, {{258, "Lib " + name}});
  }

  std::string mFolder;
};
