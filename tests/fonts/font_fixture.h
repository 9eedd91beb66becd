#pragma once
// What the font tests start from: silent runs (messages are read in the log), an existing font folder in the
// variable TTSysDir, and fonts and files of the test's own that are gone at its end.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "fonts/addfont.h"
#include "fonts/font.h"
#include "support/font_maker.h"
#include "support/registry_guard.h"
#include "ui/ui_fixture.h"

inline constexpr char kFontList[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";
inline constexpr char kShellFolders[] =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

// The texts of the messages with the variables of UiTest filled in.
inline constexpr char kSetupName[] = "Installation de Veltrane 6.0c";
inline constexpr char kGoesOn[] = "\n\nInstallation de Veltrane 6.0c va continuer.";
inline constexpr char kAddByHandText[] =
    "\nVous pourrez l'ajouter manuellement, \xe0 la fin de cette proc\xe9"
    "dure. Pour cela, fermez toutes les applications et utilisez l'option Polices dans le Panneau de "
    "configuration de Windows.";
inline constexpr char kRemoveByHandText[] =
    "\nVous pourrez supprimer la police manuellement, \xe0 la fin de cette proc\xe9"
    "dure. Pour cela, fermez toutes les applications et utilisez l'option Polices dans le Panneau de "
    "configuration de Windows.";
inline constexpr char kNeededText[] =
    "\nCette police est requise par Veltrane. Veuillez poursuivre. Puis, refermez toutes les applications en "
    "cours d'ex\xe9"
    "cution et ex\xe9"
    "cutez Installation de Veltrane 6.0c de nouveau.";

inline bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class FontTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    BeSilent();
    // First use: the system reads its own fonts and keeps their keys.
    IsFontFamilyInstalled("none of this name");
    mFonts = mDir.MakeFolder("Fonts");
    AppSetVariable("TTSysDir", mFonts.c_str());
    AppSetVariable("WinDir", mDir.MakeFolder("Windows").c_str());
  }
  void TearDown() override {
    // However a test ended: the font is out of the session and out of the list.
    for (const std::string& name : NamesIn(mFonts))
      while (RemoveFontResourceA((mFonts + "\\" + name).c_str()) != 0) {
      }
    UiTest::TearDown();
  }

  // Writes a font file and returns its path.
  std::string Font(const std::string& name, unsigned revision = 0x00010000, const char* style = "Regular",
                   const char* family = kFamily) {
    FontSpec spec;
    spec.family = family;
    spec.style = style;
    spec.revision = revision;
    return mDir.Write(name, MakeFont(spec));
  }
  std::string InFonts(const std::string& name) const { return mFonts + "\\" + name; }
  static std::string Listed(const std::string& fullName) {
    return RegistryString(HKEY_LOCAL_MACHINE, kFontList, fullName + " (TrueType)").value_or("none");
  }
  // As the system finds it, without the program's code.
  static bool SystemKnows(const std::string& family) {
    Search search = {family, false};
    LOGFONTA wanted = {};
    wanted.lfCharSet = DEFAULT_CHARSET;
    lstrcpynA(wanted.lfFaceName, family.c_str(), LF_FACESIZE);
    const HDC screen = GetDC(nullptr);
    EnumFontFamiliesExA(screen, &wanted, CompareFace, reinterpret_cast<LPARAM>(&search), 0);
    ReleaseDC(nullptr, screen);
    return search.found;
  }
  static std::string CannotInstall(const std::string& name, const std::string& source) {
    return std::string(kSetupName) + " ne peut pas installer la police TrueType " + name +
           ".\nLa police est situ\xe9"
           "e dans " +
           source + "." + kAddByHandText + kGoesOn;
  }
  static std::string CannotRemove(const std::string& name, const std::string& instructions) {
    return std::string(kSetupName) + " ne peut pas supprimer la police TrueType " + name + ". " +
           instructions + kGoesOn;
  }
  static std::string CannotDelete(const std::string& name, const std::string& instructions) {
    return std::string(kSetupName) + " ne peut pas supprimer la police " + name + ". " + instructions +
           kGoesOn;
  }

  static constexpr char kFamily[] = "Veltrane Test";
  std::string mFonts;

 private:
  struct Search {
    std::string family;
    bool found;
  };
  static int CALLBACK CompareFace(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM param) {
    auto* search = reinterpret_cast<Search*>(param);
    search->found = search->found || search->family == font->lfFaceName;
    return 1;
  }

  RegistryValueGuard mListGuard{HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test (TrueType)"};
  RegistryValueGuard mItalicGuard{HKEY_LOCAL_MACHINE, kFontList, "Veltrane Test Italic (TrueType)"};
};
