// The dialog resources: given texts, mnemonics, ids, and room for the longest texts in every language.
#include <gtest/gtest.h>
#include <windows.h>
#include <dlgs.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/handle.h"
#include "resources/ids.h"
#include "support/leak_check.h"
#include "support/resource_module.h"

namespace {

constexpr int kAnyControl = -1;
constexpr int kCaption = -2;
struct GivenDialogText {
  unsigned dialog;
  int control;
  const char* text;
};
const GivenDialogText kGivenTexts[] = {
#include "ui/given_dialogs.inc"
};

// Texts that the program puts into a control. More than one for a control: any of them, in turn.
struct FilledText {
  unsigned dialog;
  int control;
  unsigned text;
};
const FilledText kFilledTexts[] = {
    {IDD_MAIN, IDC_MAIN_TEXT, 1},
    {IDD_MAIN, IDC_MAIN_TEXT, 2},
    {IDD_MAIN, IDC_MAIN_INSTALL, 790},
    {IDD_MAIN, IDC_MAIN_FOLDER_LABEL, 261},
    {IDD_MAIN, IDC_MAIN_FOLDER_LABEL, 262},
    {IDD_MAIN, IDC_MAIN_FOLDER_LABEL, 263},
    {IDD_MAIN, IDC_MAIN_OPTIONS_LABEL, 362},
    {IDD_MAIN, IDC_MAIN_OPTION_FIRST, 1536},
    {IDD_MAIN, IDC_MAIN_OPTION_FIRST + 1, 1537},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 328},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 352},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 355},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 784},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 785},
    {IDD_PROGRESS, IDC_PROGRESS_TEXT, 795},
    {IDD_YESTOALL, IDC_MESSAGE, 4212},
    {IDD_STATUS, IDC_MESSAGE, 385},
    {IDD_FINISH_README, IDC_FINISH_NOTICE, 4355},
    {IDD_FINISH, IDC_FINISH_NOTICE, 4355},
    {IDD_FINISH_REBOOT, IDC_FINISH_NOTICE, 4355},
};

// Long but plausible values of the variables that dialogs show.
const std::map<std::wstring, std::wstring> kValues = {
    {L"SetupName", L"Installation de Veltrane 6.0c"},
    {L"AppName", L"Veltrane Standard"},
    {L"MajVersion", L"6"},
    {L"MinVersion", L"0"},
    {L"OldMajVersion", L"5"},
    {L"OldAppDir", L"C:\\Program Files\\Quorvale\\Applications scientifiques\\Veltrane 3.0 Professionnel"},
    {L"EqnConvMgr", L"Gestionnaire de conversion"},
    {L"PrimaryClassName", L"Veltrane 6.0 Equation"},
    {L"LongName", L"Microsoft Equation Editor 3.0"},
    {L"FileName", L"LiberationMono-BoldItalic.ttf"},
    {L"ProdName", L"Microsoft PowerPoint 2007"},
    {L"DestPath",
     L"C:\\Program Files\\Quorvale\\Applications\\Veltrane\\Modeles\\Algebre\\Discriminant.vteq"},
    {L"DscFilePath", L"C:\\Program Files\\Quorvale\\Applications scientifiques\\Veltrane\\VT6.QLC"},
    {L"CLSID", L"{C60857EB-FDFC-49B5-B705-033F54CED203}"},
    {L"ProgID", L"Equation.KVRX36"},
    {L"ServerPath", L"C:\\Program Files\\Veltrane\\Veltrane.exe"},
    {L"ServerExists", L"Oui"},
    {L"AutoConvertName", L"Veltrane 6.0 Equation"},
};

std::wstring Expanded(std::wstring text, const std::wstring& firstButton) {
  size_t from = 0;
  for (;;) {
    const size_t open = text.find(L'<', from), close = text.find(L'>', open);
    if (open == std::wstring::npos || close == std::wstring::npos) return text;
    const std::wstring name = text.substr(open + 1, close - open - 1);
    const auto value = kValues.find(name);
    from = open + 1;
    if (name != L"Readme_RestartBtn" && value == kValues.end()) continue;  // "<<" of a button's face
    const std::wstring& with = name == L"Readme_RestartBtn" ? firstButton : value->second;
    text.replace(open, close - open + 1, with);
    from = open + with.size();
  }
}

std::wstring WithoutAmpersand(std::wstring text) {
  text.erase(std::remove(text.begin(), text.end(), L'&'), text.end());
  return text;
}

bool IsKind(const DialogItem& item, const wchar_t* windowClass) {
  return lstrcmpiW(item.windowClass.c_str(), windowClass) == 0;
}
DWORD ButtonKind(const DialogItem& item) { return item.style & 0x0F; }
bool IsPushButton(const DialogItem& item) {
  return IsKind(item, L"BUTTON") &&
         (ButtonKind(item) == BS_PUSHBUTTON || ButtonKind(item) == BS_DEFPUSHBUTTON);
}

class Dialogs : public testing::Test {
 protected:
  void SetUp() override { mModules = OpenResourceModules(); }

  DialogResource Read(const ResourceModule& module, unsigned id) {
    DialogResource dialog;
    EXPECT_TRUE(ReadDialog(module.module, id, dialog)) << module.name << " " << id;
    return dialog;
  }
  std::wstring Text(const ResourceModule& module, unsigned id) {
    std::wstring text;
    EXPECT_TRUE(ReadText(module.module, id, text)) << module.name << " " << id;
    return text;
  }
  // Every text that a control may show: its own, or those the program puts there.
  std::vector<std::wstring> TextsOf(const ResourceModule& module, unsigned dialog, const DialogItem& item) {
    std::vector<std::wstring> texts;
    if (!item.text.empty()) texts.push_back(item.text);
    for (const FilledText& filled : kFilledTexts)
      if (filled.dialog == dialog && filled.control == item.id) texts.push_back(Text(module, filled.text));
    return texts;
  }

  std::vector<ResourceModule> mModules;
};

TEST_F(Dialogs, FixedFrenchTextsAreCharacterExact) {
  for (const ResourceModule& module : mModules) {
    if (!module.french) continue;
    for (const GivenDialogText& given : kGivenTexts) {
      const DialogResource dialog = Read(module, given.dialog);
      if (given.control == kCaption) {
        EXPECT_EQ(Narrow(dialog.title), given.text) << given.dialog;
        continue;
      }
      const auto matches = [&](const DialogItem& item) {
        return Narrow(item.text) == given.text && (given.control == kAnyControl || item.id == given.control);
      };
      EXPECT_TRUE(std::any_of(dialog.items.begin(), dialog.items.end(), matches))
          << module.name << ": " << given.dialog << " has no \"" << given.text << '"';
    }
  }
}

TEST_F(Dialogs, EveryLanguageHasTheSameControlsInTheSameOrder) {
  for (unsigned id : kDialogIds) {
    const DialogResource reference = Read(mModules[0], id);
    for (const ResourceModule& module : mModules) {
      const DialogResource dialog = Read(module, id);
      ASSERT_EQ(dialog.items.size(), reference.items.size()) << module.name << " " << id;
      for (size_t i = 0; i < dialog.items.size(); ++i) {
        EXPECT_EQ(dialog.items[i].id, reference.items[i].id) << module.name << " " << id;
        EXPECT_EQ(dialog.items[i].windowClass, reference.items[i].windowClass) << module.name << " " << id;
        EXPECT_EQ(dialog.items[i].style, reference.items[i].style) << module.name << " " << id;
      }
    }
  }
}

TEST_F(Dialogs, PlaceholdersAgreeBetweenLanguages) {
  const auto names = [](const std::wstring& text) {
    std::set<std::wstring> found;
    for (const auto& [name, value] : kValues)
      if (text.find(L"<" + name + L">") != std::wstring::npos) found.insert(name);
    return found;
  };
  for (unsigned id : kDialogIds) {
    const DialogResource french = Read(mModules[0], id), english = Read(mModules[2], id);
    EXPECT_EQ(names(french.title), names(english.title)) << id;
    for (size_t i = 0; i < french.items.size(); ++i)
      EXPECT_EQ(names(french.items[i].text), names(english.items[i].text))
          << id << " control " << french.items[i].id;
  }
}

TEST_F(Dialogs, MnemonicsAgreeBetweenLanguages) {
  for (unsigned id : kDialogIds) {
    const DialogResource french = Read(mModules[0], id), english = Read(mModules[2], id);
    for (size_t i = 0; i < french.items.size(); ++i)
      EXPECT_EQ(MnemonicOf(french.items[i].text) != 0, MnemonicOf(english.items[i].text) != 0)
          << id << " control " << french.items[i].id;
  }
}

// Which letter, and how many controls may share it: the main dialog's browse button and its first removal
// option, of which one is always disabled, begin with the same letter by their given texts.
TEST_F(Dialogs, MnemonicsAreUniqueWithinADialog) {
  for (const ResourceModule& module : mModules) {
    for (unsigned id : kDialogIds) {
      std::map<wchar_t, std::set<int>> users;
      const DialogResource dialog = Read(module, id);
      for (const DialogItem& item : dialog.items)
        for (const std::wstring& text : TextsOf(module, id, item))
          if (const wchar_t letter = MnemonicOf(text)) users[letter].insert(item.id);
      for (const auto& [letter, controls] : users) {
        const bool shared = id == IDD_MAIN && module.french && letter == L'P';
        const std::set<int> pair = {IDC_MAIN_BROWSE, IDC_MAIN_OPTION_FIRST};
        if (shared) {
          EXPECT_EQ(controls, pair);
        } else {
          EXPECT_EQ(controls.size(), 1u) << module.name << " " << id << ": " << static_cast<char>(letter);
        }
      }
    }
  }
}

TEST_F(Dialogs, ControlsHaveTheirFixedIds) {
  const std::map<unsigned, std::vector<int>> wanted = {
      {IDD_MAIN,
       {IDC_MAIN_INSTALL, IDC_MAIN_REMOVE, IDC_MAIN_TEXT, IDC_MAIN_FOLDER_LABEL, IDC_MAIN_FOLDER,
        IDC_MAIN_BROWSE, IDC_MAIN_OPTIONS_LABEL, IDC_MAIN_WORKSTATION_NOTE, IDC_MAIN_OPTION_FIRST,
        IDC_MAIN_OPTION_FIRST + 1, IDOK, IDCANCEL, IDC_HELP_BUTTON}},
      {IDD_PROGRESS,
       {IDC_PROGRESS_LABEL, IDC_PROGRESS_TEXT, IDD_PROGMETER_GRAPH, IDCANCEL, IDC_PROGRESS_STOP}},
      {IDD_YESTOALL, {IDC_MESSAGE, IDC_ANSWER_YES, IDC_ANSWER_YES_TO_ALL, IDC_ANSWER_NO}},
      // What the open-file dialog expects of a template.
      {IDD_BROWSE,
       {lst1, lst2, cmb1, cmb2, edt1, stc1, stc2, stc3, stc4, chx1, IDOK, IDCANCEL, pshHelp, psh14,
        IDC_BROWSE_CREATE}},
      {IDD_NEWFOLDER, {IDC_NEWFOLDER_NAME, IDOK, IDCANCEL}},
      {IDD_OLEMGR,
       {IDC_OLE_CONVERT_LIST, IDC_OLE_KEEP_LIST, IDC_OLE_TO_KEEP, IDC_OLE_TO_CONVERT, IDC_OLE_CONVERT_DETAILS,
        IDC_OLE_KEEP_DETAILS, IDC_OLE_PRODUCT_DETAILS, IDC_OLE_INSTALLED_ONLY, IDC_OLE_ALL, IDOK}},
      {IDD_OLEDETAILS, {IDOK}},
      {IDD_LANGUAGE, {IDC_LANGUAGE_LIST, IDOK}},
      {IDD_OLDVERSION, {IDC_OLD_REPLACE, IDC_OLD_KEEP, IDOK, IDCANCEL, IDC_HELP_BUTTON}},
      {IDD_STATUS, {IDC_MESSAGE}},
      {IDD_OFFICE, {IDOK, IDCANCEL}},
      {IDD_FINISH_README, {IDC_FINISH_LAUNCH, IDC_FINISH_README, IDC_FINISH_NOTICE, IDOK}},
      {IDD_FINISH, {IDC_FINISH_LAUNCH, IDC_FINISH_NOTICE, IDOK}},
      {IDD_FINISH_REBOOT, {IDC_FINISH_README, IDC_FINISH_NOTICE, IDOK, IDCANCEL}},
      {IDD_MACROS_WORD, {IDOK}},
      {IDD_MACROS_PPT, {IDOK}},
  };
  ASSERT_EQ(wanted.size(), kDialogIds.size());
  for (const ResourceModule& module : mModules)
    for (const auto& [id, controls] : wanted) {
      const DialogResource dialog = Read(module, id);
      for (int control : controls)
        EXPECT_TRUE(dialog.Find(control)) << module.name << " " << id << "/" << control;
    }
}

TEST_F(Dialogs, NoControlIdIsUsedTwice) {
  for (unsigned id : kDialogIds) {
    std::set<int> seen;
    for (const DialogItem& item : Read(mModules[0], id).items)
      if (item.id != -1 && item.id != 0xFFFF) {
        EXPECT_TRUE(seen.insert(item.id).second) << id << "/" << item.id;
      }
  }
}

TEST_F(Dialogs, EachHasOneDefaultButtonAndOnlyTheStatusWindowHasNone) {
  for (unsigned id : kDialogIds) {
    const DialogResource dialog = Read(mModules[0], id);
    const auto isDefault = [](const DialogItem& item) {
      return IsKind(item, L"BUTTON") && ButtonKind(item) == BS_DEFPUSHBUTTON;
    };
    EXPECT_EQ(std::count_if(dialog.items.begin(), dialog.items.end(), isDefault), id == IDD_STATUS ? 0 : 1)
        << id;
  }
}

TEST_F(Dialogs, WhatCanBePressedIsATabStop) {
  for (unsigned id : kDialogIds) {
    for (const DialogItem& item : Read(mModules[0], id).items) {
      if (!(item.style & WS_VISIBLE)) continue;
      const bool pressed = IsPushButton(item) || IsKind(item, L"EDIT") || IsKind(item, L"LISTBOX") ||
                           IsKind(item, L"COMBOBOX") ||
                           (IsKind(item, L"BUTTON") && ButtonKind(item) == BS_AUTOCHECKBOX);
      if (pressed) {
        EXPECT_TRUE(item.style & WS_TABSTOP) << id << "/" << item.id;
      }
    }
  }
}

// A mnemonic of a label goes to the control behind it.
TEST_F(Dialogs, LabelsStandBeforeTheirFields) {
  for (unsigned id : kDialogIds) {
    const DialogResource dialog = Read(mModules[0], id);
    for (size_t i = 0; i < dialog.items.size(); ++i) {
      const DialogItem& label = dialog.items[i];
      if (!IsKind(label, L"STATIC") || MnemonicOf(label.text) == 0 || !(label.style & WS_VISIBLE)) continue;
      EXPECT_FALSE(label.style & SS_NOPREFIX) << id << "/" << label.id;
      size_t next = i + 1;
      while (next < dialog.items.size() && IsKind(dialog.items[next], L"STATIC")) ++next;
      ASSERT_LT(next, dialog.items.size()) << id;
      EXPECT_FALSE(IsPushButton(dialog.items[next])) << id << "/" << dialog.items[next].id;
    }
  }
}

bool IsShownWith(unsigned id, const DialogItem& a, const DialogItem& b) {
  if (a.id != IDC_MAIN_WORKSTATION_NOTE && b.id != IDC_MAIN_WORKSTATION_NOTE) return true;
  return id != IDD_MAIN;  // the note stands where the removal options stand
}

TEST_F(Dialogs, ControlsLieInsideAndApart) {
  for (unsigned id : kDialogIds) {
    const DialogResource dialog = Read(mModules[0], id);
    for (size_t i = 0; i < dialog.items.size(); ++i) {
      const DialogItem& item = dialog.items[i];
      if (!(item.style & WS_VISIBLE) && item.id != IDC_MAIN_WORKSTATION_NOTE) continue;
      RECT place = item.place;
      if (IsKind(item, L"COMBOBOX")) place.bottom = place.top + 13;  // closed
      EXPECT_GE(place.left, 7) << id << "/" << item.id;
      EXPECT_GE(place.top, 6) << id << "/" << item.id;
      EXPECT_LE(place.right, dialog.size.cx - 7) << id << "/" << item.id;
      EXPECT_LE(place.bottom, dialog.size.cy - 6) << id << "/" << item.id;
      for (size_t j = 0; j < i; ++j) {
        const DialogItem& other = dialog.items[j];
        RECT common, otherPlace = other.place;
        if (IsKind(other, L"COMBOBOX")) otherPlace.bottom = otherPlace.top + 13;
        if (!(other.style & WS_VISIBLE) || !IsShownWith(id, item, other)) continue;
        EXPECT_FALSE(IntersectRect(&common, &place, &otherPlace))
            << id << ": " << item.id << " over " << other.id;
      }
    }
  }
}

TEST_F(Dialogs, FitOnASmallScreen) {
  // 640 by 480 with the system font's usual units of 1.5 by 1.625 points, less the frame and the task bar.
  for (unsigned id : kDialogIds) {
    const SIZE size = Read(mModules[0], id).size;
    EXPECT_LE(size.cx * 3 / 2, 620) << id;
    EXPECT_LE(size.cy * 13 / 8, 420) << id;
  }
}

// ---- room for texts, measured with the fonts of the real windows ----

INT_PTR CALLBACK QuietProc(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; }

class Measured {
 public:
  Measured(HWND control, bool bold) : mControl(control), mDc(GetDC(control)) {
    HFONT font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    if (bold) {
      LOGFONTA description = {};
      GetObjectA(font, sizeof description, &description);
      description.lfWeight = FW_BOLD;
      mBold = FontHandle(CreateFontIndirectA(&description));
      font = mBold.Get();
    }
    mOld = SelectObject(mDc, font);
  }
  Measured(const Measured&) = delete;
  Measured& operator=(const Measured&) = delete;
  ~Measured() {
    SelectObject(mDc, mOld);
    ReleaseDC(mControl, mDc);
  }
  SIZE Wrapped(const std::wstring& text, int width, UINT flags) const {
    RECT area = {0, 0, width, 0};
    DrawTextW(mDc, text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT | DT_WORDBREAK | flags);
    return {area.right, area.bottom};
  }

 private:
  HWND mControl;
  HDC mDc;
  FontHandle mBold;
  HGDIOBJ mOld;
};

// How much wider than its text a button must be: its frame, or its box and the gap behind it.
constexpr int kFrame = 10;
constexpr int kBox = 20;

void ExpectFits(HWND control, const ResourceModule& module, unsigned id, const DialogItem& item,
                const std::wstring& text) {
  RECT room;
  GetClientRect(control, &room);
  UINT flags = 0;
  if (IsKind(item, L"STATIC") && (item.style & SS_NOPREFIX)) flags |= DT_NOPREFIX;
  if (IsKind(item, L"STATIC") && (item.style & SS_EDITCONTROL)) flags |= DT_EDITCONTROL;
  if (IsPushButton(item)) room.right -= kFrame, flags |= DT_SINGLELINE;
  if (IsKind(item, L"BUTTON") && !IsPushButton(item)) room.right -= kBox;
  const SIZE needed = Measured(control, item.id == IDC_FINISH_NOTICE).Wrapped(text, room.right, flags);
  EXPECT_LE(needed.cx, room.right) << module.name << " " << id << "/" << item.id << ": " << Narrow(text);
  EXPECT_LE(needed.cy, room.bottom) << module.name << " " << id << "/" << item.id << ": " << Narrow(text);
}

TEST_F(Dialogs, EveryTextHasRoomInEveryLanguage) {
  AllowOpenHandles("the system's first use of its dialog and button classes");
  for (const ResourceModule& module : mModules) {
    for (unsigned id : kDialogIds) {
      const DialogResource resource = Read(module, id);
      WindowHandle dialog(CreateDialogParamA(module.module, MAKEINTRESOURCEA(id), nullptr, QuietProc, 0));
      ASSERT_TRUE(dialog) << module.name << " " << id;
      const DialogItem* first = resource.Find(IDOK);
      const std::wstring firstButton = first ? WithoutAmpersand(first->text) : L"";
      // The windows stand in the order of the template; some have no id of their own.
      HWND control = GetWindow(dialog.Get(), GW_CHILD);
      for (const DialogItem& item : resource.items) {
        ASSERT_TRUE(control) << id;
        const bool shown = item.style & WS_VISIBLE || item.id == IDC_MAIN_WORKSTATION_NOTE;
        if (shown && (IsKind(item, L"STATIC") || IsKind(item, L"BUTTON")))
          for (const std::wstring& text : TextsOf(module, id, item))
            ExpectFits(control, module, id, item, Expanded(text, firstButton));
        control = GetWindow(control, GW_HWNDNEXT);
      }
    }
  }
}

}  // namespace
