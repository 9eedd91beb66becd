// The texts and the version, manifest and icon resources of the program and of both language libraries.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/resource_module.h"

namespace {

enum GivenKind { kExact, kBegins, kFree };
struct GivenText {
  unsigned id;
  GivenKind kind;
  const char* text;
};
const GivenText kGivenTexts[] = {
#include "messages/given_texts.inc"
};

// Texts that are read one after the other up to "!END!".
const unsigned kRuns[] = {816, 1048, 1072, 1080, 1088, 1536, 1664, 1792, 4000};
constexpr wchar_t kEnd[] = L"!END!";

class Resources : public testing::Test {
 protected:
  void SetUp() override { mModules = OpenResourceModules(); }

  // Fails the test, with the module's name, when the text is missing.
  std::wstring Text(const ResourceModule& module, unsigned id) {
    std::wstring text;
    EXPECT_TRUE(ReadText(module.module, id, text)) << module.name << " has no text " << id;
    return text;
  }
  // The texts of a run without the end mark.
  std::vector<std::wstring> Run(const ResourceModule& module, unsigned first) {
    std::vector<std::wstring> texts;
    for (unsigned id = first; id < first + 100; ++id) {
      const std::wstring text = Text(module, id);
      if (text == kEnd || text.empty()) return texts;
      texts.push_back(text);
    }
    ADD_FAILURE() << module.name << ": the run from " << first << " does not end";
    return texts;
  }

  std::vector<ResourceModule> mModules;
};

std::multiset<std::string> Placeholders(const std::wstring& wide) {
  std::multiset<std::string> found;
  const std::string text = Narrow(wide);
  for (size_t open = text.find('<'); open != std::string::npos; open = text.find('<', open + 1)) {
    const size_t close = text.find('>', open);
    if (close != std::string::npos) found.insert(text.substr(open, close - open + 1));
  }
  return found;
}

// "%s%d%s" of a format.
std::string Conversions(const std::wstring& text) {
  std::string found;
  for (size_t i = 0; i + 1 < text.size(); ++i)
    if (text[i] == L'%') found += {'%', static_cast<char>(text[i + 1])};
  return found;
}

size_t LineFeedsInFront(const std::wstring& text) {
  return std::min(text.find_first_not_of(L'\n'), text.size());
}

std::string ResourceBytes(HMODULE module, int id, LPCSTR type) {
  const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), type);
  if (!found) return "";
  return std::string(static_cast<const char*>(LockResource(LoadResource(module, found))),
                     SizeofResource(module, found));
}

// Entries of the version resource, found by their names: behind a header of three words and the name, at the
// next multiple of four, lies the value. The second word of the header is the value's length.
std::string VersionValue(const std::string& resource, const wchar_t* wideName, bool text) {
  std::string name;
  for (const wchar_t* at = wideName; *at; ++at) name += {static_cast<char>(*at), '\0'};
  name += std::string(2, '\0');
  const size_t found = resource.find(name);
  if (found == std::string::npos || found < 6) return "";
  const size_t length = static_cast<unsigned char>(resource[found - 4]) * (text ? 2 : 1);
  return resource.substr((found + name.size() + 3) & ~size_t{3}, length);
}

std::string VersionResource(const ResourceModule& module) {
  return ResourceBytes(module.module, 1, reinterpret_cast<LPCSTR>(RT_VERSION));
}

std::wstring VersionText(const ResourceModule& module, const wchar_t* name) {
  const std::string value = VersionValue(VersionResource(module), name, true);
  std::wstring text;
  for (size_t i = 0; i + 1 < value.size() && value[i] != 0; i += 2)
    text += static_cast<unsigned char>(value[i]);
  return text;
}

std::string Translation(const ResourceModule& module) {
  return VersionValue(VersionResource(module), L"Translation", false);
}

TEST_F(Resources, EveryListedTextIsInTheProgramAndInBothLibraries) {
  for (const ResourceModule& module : mModules)
    for (const GivenText& given : kGivenTexts) EXPECT_FALSE(Text(module, given.id).empty());
}

TEST_F(Resources, FixedFrenchTextsAreCharacterExact) {
  for (const ResourceModule& module : mModules) {
    if (!module.french) continue;
    for (const GivenText& given : kGivenTexts)
      if (given.kind == kExact) {
        EXPECT_EQ(Narrow(Text(module, given.id)), given.text) << module.name << " " << given.id;
      }
  }
}

TEST_F(Resources, TextsThatBeginAsGivenAddOneSentence) {
  for (const GivenText& given : kGivenTexts) {
    if (given.kind != kBegins) continue;
    const std::string text = Narrow(Text(mModules[0], given.id));
    const std::string begin = given.text;
    ASSERT_EQ(text.substr(0, begin.size()), begin) << given.id;
    ASSERT_GT(text.size(), begin.size()) << given.id;
    EXPECT_TRUE(text[begin.size()] == ' ' || text[begin.size()] == '\n')
        << given.id << ": more than the sentence itself";
    EXPECT_EQ(text.back(), '.') << given.id;
  }
}

TEST_F(Resources, TheFrenchLibrarySaysWhatTheProgramSays) {
  const std::vector<unsigned> ids = AllTextIds(mModules[0].module);
  EXPECT_EQ(ids, AllTextIds(mModules[1].module));
  for (unsigned id : ids) EXPECT_EQ(Text(mModules[0], id), Text(mModules[1], id)) << id;
}

TEST_F(Resources, TheEnglishLibraryHasTheSameIds) {
  EXPECT_EQ(AllTextIds(mModules[0].module), AllTextIds(mModules[2].module));
}

TEST_F(Resources, NothingOfFrenchIsLeftInEnglish) {
  // Names and scripts are the same in both; sentences are not.
  for (unsigned id : AllTextIds(mModules[0].module)) {
    const std::wstring french = Text(mModules[0], id);
    if (french.size() < 30 || id / 16 == 1792 / 16) continue;
    EXPECT_NE(french, Text(mModules[2], id)) << id;
  }
}

TEST_F(Resources, PlaceholdersAgreeBetweenLanguages) {
  for (unsigned id : AllTextIds(mModules[0].module)) {
    const std::multiset<std::string> french = Placeholders(Text(mModules[0], id));
    const std::multiset<std::string> english = Placeholders(Text(mModules[2], id));
    // How often a name is repeated is a matter of the language.
    EXPECT_EQ(std::set<std::string>(french.begin(), french.end()),
              std::set<std::string>(english.begin(), english.end()))
        << id;
  }
}

TEST_F(Resources, MnemonicsAndLeadingLineFeedsAgreeBetweenLanguages) {
  for (unsigned id : AllTextIds(mModules[0].module)) {
    const std::wstring french = Text(mModules[0], id), english = Text(mModules[2], id);
    EXPECT_EQ(MnemonicOf(french) != 0, MnemonicOf(english) != 0) << id;
    EXPECT_EQ(LineFeedsInFront(french), LineFeedsInFront(english)) << id;
  }
}

TEST_F(Resources, AssertionTextTakesFileLineAndExpression) {
  for (const ResourceModule& module : mModules) {
    const std::wstring text = Text(module, 2049);
    EXPECT_EQ(Conversions(text), "%s%d%s") << module.name;
    EXPECT_LT(text.size(), 400u) << module.name;
    EXPECT_LT(Text(module, 2048).size(), 400u) << module.name;
  }
  const std::string question = "Voulez-vous continuer?";
  const std::string french = Narrow(Text(mModules[0], 2049));
  ASSERT_GT(french.size(), question.size());
  EXPECT_EQ(french.substr(french.size() - question.size()), question);
}

TEST_F(Resources, NoOtherTextHoldsAPrintfConversion) {
  for (const ResourceModule& module : mModules)
    for (unsigned id : AllTextIds(module.module))
      if (id != 2049) {
        EXPECT_EQ(Text(module, id).find(L'%'), std::wstring::npos) << module.name << " " << id;
      }
}

// One piece of a text is cut at 1023 characters; "$" at the end and "!" in front have a meaning of their own.
TEST_F(Resources, TextsKeepTheLoadersRules) {
  for (const ResourceModule& module : mModules) {
    for (unsigned id : AllTextIds(module.module)) {
      const std::wstring text = Text(module, id);
      EXPECT_LT(text.size(), 1000u) << module.name << " " << id;
      EXPECT_NE(text.back(), L'$') << module.name << " " << id;
      EXPECT_TRUE(text[0] != L'!' || text == kEnd) << module.name << " " << id;
      EXPECT_EQ(Wide(Narrow(text)), text) << module.name << " " << id << " leaves the code page";
    }
  }
}

// "u" in a placeholder's format is no conversion, so it would stay as it stands.
TEST_F(Resources, FormatsOfPlaceholdersAreKnown) {
  for (const ResourceModule& module : mModules)
    for (unsigned id : AllTextIds(module.module))
      for (const std::string& name : Placeholders(Text(module, id))) {
        const size_t colon = name.find(':');
        if (colon == std::string::npos) continue;
        EXPECT_NE(std::string("dxXoc").find(name[name.size() - 2]), std::string::npos)
            << module.name << " " << id;
      }
}

TEST_F(Resources, RunsEndInEveryModule) {
  for (const ResourceModule& module : mModules)
    for (unsigned first : kRuns) EXPECT_FALSE(Run(module, first).empty()) << module.name << " " << first;
}

TEST_F(Resources, MessagesInPiecesFitTheirReaders) {
  for (const ResourceModule& module : mModules) {
    for (unsigned first : {1048u, 1072u, 1080u, 1088u}) {
      std::wstring whole;
      for (const std::wstring& text : Run(module, first)) whole += text;
      EXPECT_NE(whole.find(L"<Reason>"), std::wstring::npos) << module.name << " " << first;
      EXPECT_NE(whole.find(L"<Action>"), std::wstring::npos) << module.name << " " << first;
    }
    // Reasons and advice stand four and four, in the same order.
    for (unsigned first : {1128u, 1152u, 1160u, 1168u, 1208u, 1232u, 1240u, 1248u})
      for (unsigned id = first; id < first + 4; ++id) EXPECT_FALSE(Text(module, id).empty());
  }
}

TEST_F(Resources, AdviceNamesItsWordVersion) {
  const std::map<unsigned, const wchar_t*> versions = {
      {1208, L"Word 2000"}, {1232, L"Word 2002"}, {1240, L"Word 2003"}, {1248, L"Word 2007"}};
  for (const ResourceModule& module : mModules)
    for (const auto& [first, version] : versions)
      for (unsigned id = first; id < first + 4; ++id)
        EXPECT_NE(Text(module, id).find(version), std::wstring::npos) << module.name << " " << id;
}

TEST_F(Resources, RemovalOptionsHaveATextForEachName) {
  for (const ResourceModule& module : mModules) {
    EXPECT_EQ(Run(module, 1536).size(), Run(module, 1664).size()) << module.name;
    EXPECT_EQ(Run(module, 1664), (std::vector<std::wstring>{L"remove_keep_prefs", L"remove_keep_fonts"}));
  }
}

TEST_F(Resources, TheStubScriptIsTheSameInEveryLanguage) {
  EXPECT_EQ(Run(mModules[0], 1792).size(), 8u);
  EXPECT_EQ(Run(mModules[0], 1792), Run(mModules[2], 1792));
}

// Merged after the script has run, so an identity variable here would override the script's.
TEST_F(Resources, BuiltInSettingsHoldNoIdentity) {
  const std::vector<std::wstring> wanted = {L"[Config]", L"CompanyName=Quorvale"};
  for (const ResourceModule& module : mModules) EXPECT_EQ(Run(module, 4000), wanted) << module.name;
}

TEST_F(Resources, EachModuleHasExactlyOneTranslation) {
  EXPECT_EQ(Translation(mModules[0]), std::string("\x0C\x04\xE4\x04", 4));
  EXPECT_EQ(Translation(mModules[1]), std::string("\x0C\x04\xE4\x04", 4));
  EXPECT_EQ(Translation(mModules[2]), std::string("\x09\x04\xE4\x04", 4));
}

TEST_F(Resources, TheVersionNamesTheBuild) {
  for (const ResourceModule& module : mModules) {
    EXPECT_EQ(VersionText(module, L"FileVersion"), L"6.0 (200707050000)") << module.name;
    const std::string bytes = VersionValue(VersionResource(module), L"VS_VERSION_INFO", false);
    VS_FIXEDFILEINFO fixed = {};
    ASSERT_EQ(bytes.size(), sizeof fixed) << module.name;
    memcpy(&fixed, bytes.data(), sizeof fixed);
    EXPECT_EQ(fixed.dwSignature, 0xFEEF04BDu);
    EXPECT_EQ(fixed.dwFileVersionMS, 0x00060000u);
    EXPECT_EQ(fixed.dwFileVersionLS, 0u);
  }
}

TEST_F(Resources, TheManifestAsksForTheHighestRightsAndKnowsEachWindows) {
  const std::string manifest = ResourceBytes(mModules[0].module, 1, reinterpret_cast<LPCSTR>(RT_MANIFEST));
  EXPECT_NE(manifest.find("level=\"highestAvailable\""), std::string::npos);
  EXPECT_NE(manifest.find("Microsoft.Windows.Common-Controls"), std::string::npos);
  for (const char* id : {"e2011457-1546-43c5-a5fe-008deee3d3f0", "35138b9a-5d96-4fbd-8e2d-a2440225f93a",
                         "4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38", "1f676c76-80e1-4239-95bb-83d0f6d0da78",
                         "8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a"})
    EXPECT_NE(manifest.find(id), std::string::npos) << id;
}

TEST_F(Resources, TheIconComesInThreeSizes) {
  const std::string group = ResourceBytes(mModules[0].module, 1, reinterpret_cast<LPCSTR>(RT_GROUP_ICON));
  ASSERT_EQ(group.size(), 6u + 3 * 14);
  EXPECT_EQ(group[6], 16);
  EXPECT_EQ(group[6 + 14], 32);
  EXPECT_EQ(group[6 + 28], 48);
}

TEST_F(Resources, EveryDialogIsInEveryModule) {
  for (unsigned id : kDialogIds) {
    DialogResource dialog;
    for (const ResourceModule& module : mModules)
      EXPECT_TRUE(ReadDialog(module.module, id, dialog)) << module.name << " " << id;
  }
}

}  // namespace
