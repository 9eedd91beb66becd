// Equation servers in the registry: what is found, what is known of each, and whose
// objects the product takes.
#include "oleserver/regmgr.h"

#include "oleserver/ole_fixture.h"

namespace {

class ServerTest : public OleTest {
 protected:
  static std::string ServerOf(const std::string& classId) {
    return std::string(COLEEquationReg(classId.c_str()).ServerPath().View());
  }
  static std::string PreferencesOf(const std::string& classId) {
    Str path;
    return COLEEquationReg(classId.c_str()).GetPreferencePath(path) ? path.Chars() : "none";
  }
  static bool MayTake(const std::string& classId) { return COLEEquationReg(classId.c_str()).MayTakeOver(); }
};

TEST_F(ServerTest, ListHoldsEveryEquationServerButTheOwn) {
  AddServer("Equation.3", kClassA, "Microsoft Equation 3.0");
  AddServer("Equation", kClassB, "Equation Editor");
  AddProgId("Equation.KVRX6", kOwnClass);
  EXPECT_EQ(ListAll(), "Equation;Equation.3;");
}

TEST_F(ServerTest, ListIgnoresOtherNames) {
  AddServer("EquationX", kClassA, "no equation server");
  AddServer("Equations.3", kClassB, "no equation server");
  AddServer("Formula.Equation.3", kClassC, "no equation server");
  EXPECT_EQ(ListAll(), "");
}

TEST_F(ServerTest, ListFindsNamesOfAnyCase) {
  AddServer("EQUATION.3", kClassA, "Microsoft Equation 3.0");
  EXPECT_EQ(ListAll(), "EQUATION.3;");
}

TEST_F(ServerTest, ListLeavesOutProgIdsWithoutAReadableClass) {
  GuardKey(std::string(kClasses) + "Equation.2");
  SetClass("Equation.2", "has no class");
  AddProgId("Equation.4", "no class identifier");
  AddServer("Equation.3", kClassA, "Microsoft Equation 3.0");
  EXPECT_EQ(ListAll(), "Equation.3;");
}

TEST_F(ServerTest, ListHoldsAClassOfTwoProgIdsOnce) {
  AddServer("Equation.3", kClassA, "Microsoft Equation 3.0");
  AddProgId("Equation.3b", kClassA);
  EXPECT_EQ(ListAll(), "Equation.3;");
}

TEST_F(ServerTest, ListComparesTheOwnClassWithoutCase) {
  AppSetVariable("ClassId", "{5d1e2c40-7a35-4b0e-9c11-3f6a8e0b7d26}");
  AddProgId("Equation.KVRX6", kOwnClass);
  EXPECT_EQ(ListAll(), "");
}

TEST_F(ServerTest, ClassWithoutProgIdIsListedAndDescribed) {
  AddClass(kClassA, "");
  AddProgId("Equation.3", kClassA);
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  ASSERT_EQ(servers.size(), 1u);
  EXPECT_EQ(servers[0]->ClassId(), kClassA);
  EXPECT_EQ(servers[0]->ProgId(), "");
  EXPECT_EQ(servers[0]->ServerPath(), "");
  const ServerDescription server = servers[0]->Description();
  EXPECT_EQ(server.maker, "MS");
  EXPECT_EQ(server.version, 1);
  EXPECT_FALSE(server.own);
  EXPECT_EQ(FindServerByProgId(servers, "Equation.3"), nullptr);
}

TEST_F(ServerTest, ServerIsThe32BitOneFirst) {
  AddServer("Equation.3", kClassA, "a", "C:\\eq32.exe");
  SetClass(std::string("CLSID\\") + kClassA + "\\LocalServer", "C:\\eq16.exe");
  EXPECT_EQ(ServerOf(kClassA), "C:\\eq32.exe");
}

TEST_F(ServerTest, ServerIsThe16BitOneElse) {
  AddServer("Equation.3", kClassA, "a");
  SetClass(std::string("CLSID\\") + kClassA + "\\LocalServer", "C:\\eq16.exe /x");
  EXPECT_EQ(ServerOf(kClassA), "C:\\eq16.exe");
}

TEST_F(ServerTest, AnEmptyServerCountsAsMissing) {
  AddServer("Equation.3", kClassA, "a");
  SetClass(std::string("CLSID\\") + kClassA + "\\LocalServer32", "");
  SetClass(std::string("CLSID\\") + kClassA + "\\LocalServer", "C:\\eq16.exe");
  EXPECT_EQ(ServerOf(kClassA), "C:\\eq16.exe");
}

TEST_F(ServerTest, ServerIsThatOfTheOldProtocolAtLast) {
  AddServer("Equation.3", kClassA, "a");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kClasses) + "Equation.3\\protocol\\StdExecute", "Server",
                    "C:\\eqold.exe -x");
  EXPECT_EQ(ServerOf(kClassA), "C:\\eqold.exe");
}

TEST_F(ServerTest, WithoutProgIdTheOldProtocolIsNotAsked) {
  GuardKey(std::string(kClasses) + "protocol\\StdExecute");
  SetRegistryString(HKEY_LOCAL_MACHINE, std::string(kClasses) + "protocol\\StdExecute", "Server",
                    "C:\\other.exe");
  AddClass(kClassA, "a");
  EXPECT_EQ(ServerOf(kClassA), "");
}

TEST_F(ServerTest, QuotedServerWithSwitchesGivesTheProgram) {
  AddServer("Equation.3", kClassA, "a", "\"C:\\Program Files\\eq ed.exe\" /automation");
  EXPECT_EQ(ServerOf(kClassA), "C:\\Program Files\\eq ed.exe");
}

TEST_F(ServerTest, UnquotedServerWithBlanksAndSwitchesGivesTheProgram) {
  AddServer("Equation.3", kClassA, "a", "C:\\Program Files\\eq ed.exe /automation");
  EXPECT_EQ(ServerOf(kClassA), "C:\\Program Files\\eq ed.exe");
}

TEST_F(ServerTest, AServerPathIsReadUpTo299Characters) {
  AddServer("Equation.3", kClassA, "a", "C:\\" + std::string(600, 'x'));
  EXPECT_EQ(ServerOf(kClassA), "C:\\" + std::string(296, 'x'));
}

TEST_F(ServerTest, AnEndlessServerPathIsNone) {
  AddServer("Equation.3", kClassA, "a", "C:\\" + std::string(5000, 'x'));
  EXPECT_EQ(ServerOf(kClassA), "");
}

TEST_F(ServerTest, DisplayNameIsTheUserType) {
  AddServer("Equation.3", kClassA, "Microsoft \xc9quation 3.0");
  EXPECT_EQ(COLEEquationReg(kClassA).UserTypeName(), "Microsoft \xc9quation 3.0");
  EXPECT_EQ(COLEEquationReg(kClassA).DisplayName(), "Microsoft \xc9quation 3.0");
}

TEST_F(ServerTest, DisplayNameOfTheOldestProgIdIsItsOwn) {
  AddServer("Equation", kClassA, "Equation Editor");
  EXPECT_EQ(COLEEquationReg(kClassA).DisplayName(), "Veltrane 1.x-3.x ou Equation Editor 1.x");
}

TEST_F(ServerTest, DisplayNameWithoutUserTypeIsWhatIsKnown) {
  AddServer("Equation.3", kClassA, "");
  EXPECT_EQ(COLEEquationReg(kClassA).DisplayName(), "Equation.3");
  EXPECT_EQ(COLEEquationReg(kClassB).DisplayName(), kClassB);
}

TEST_F(ServerTest, OldestProgIdOfTheProductsProgramIsOwn) {
  AddServer("Equation", kClassA, "a", "C:\\old\\veltrane.exe");
  EXPECT_TRUE(COLEEquationReg(kClassA).Description().own);
  EXPECT_EQ(COLEEquationReg(kClassA).Description().maker, "KV");
  EXPECT_EQ(COLEEquationReg(kClassA).Description().version, 3);
}

TEST_F(ServerTest, DescriptionSaysWhetherItConverts) {
  AddServer("Equation.3", kClassA, "a");
  EXPECT_FALSE(COLEEquationReg(kClassA).Description().convertsToUs);
  Convert(kClassA, kOwnClass);
  EXPECT_TRUE(COLEEquationReg(kClassA).Description().convertsToUs);
}

TEST_F(ServerTest, OwnDescriptionComesFromTheVariables) {
  const ServerDescription own = OwnDescription();
  EXPECT_EQ(own.maker, "KV");
  EXPECT_EQ(own.version, 6);
  EXPECT_TRUE(own.own);
  EXPECT_EQ(OwnClassId(), kOwnClass);
}

TEST_F(ServerTest, OwnDescriptionWithoutVariablesIsEmpty) {
  AppVars().Clear();
  EXPECT_EQ(OwnDescription().version, 0);
  EXPECT_EQ(OwnDescription().maker, "");
}

TEST_F(ServerTest, FindServerComparesWithoutCase) {
  AddServer("Equation.KVRX5", kClassA, "a");
  AddServer("Equation.3", kClassB, "b");
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  const COLEEquationReg* found = FindServerByProgId(servers, "equation.kvrx5");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->ClassId(), kClassA);
  EXPECT_EQ(FindServerByProgId(servers, "Equation.KVRX"), nullptr);
}

TEST_F(ServerTest, NewestIsTheHighestVersion) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.KVRX5", kClassB, "b");
  AddServer("Equation.COEE2", kClassC, "c");
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  std::string order;
  for (const COLEEquationReg* server : SortNewestFirst(servers))
    order += server->ProgId().Chars() + 9 + std::string(" ");
  EXPECT_EQ(order, "KVRX5 3 COEE2 ");
}

TEST_F(ServerTest, NewestAmongEqualVersionsIsByMakerThenProgId) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.ABCD3", kClassB, "b");
  AddServer("Equation.ABCE3", kClassC, "c");
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  std::string order;
  for (const COLEEquationReg* server : SortNewestFirst(servers))
    order += server->ProgId().Chars() + 9 + std::string(" ");
  EXPECT_EQ(order, "3 ABCE3 ABCD3 ");
}

// ---- whose objects the product takes over ----

TEST_F(ServerTest, OlderAndEqualServersAreTakenOver) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.KVRX6", kClassB, "b");
  EXPECT_TRUE(MayTake(kClassA));
  EXPECT_TRUE(MayTake(kClassB));
}

TEST_F(ServerTest, ANewerReleaseIsNeverTakenOver) {
  AddServer("Equation.KVRX7", kClassA, "a");
  Convert(kClassA, kOwnClass);
  for (const int32_t choice : {0, 1, 2, 3}) {
    ::Run().oldVersionChoice = choice;
    EXPECT_FALSE(MayTake(kClassA)) << choice;
  }
  ::Run().oldVersionChoice = kOldVersionNone;
  EXPECT_EQ(ListTakeOver(), "");
  EXPECT_EQ(ListAll(), "Equation.KVRX7;");
}

TEST_F(ServerTest, ReplacingTakesOver) {
  AddServer("Equation.3", kClassA, "a");
  ::Run().oldVersionChoice = kOldVersionReplace;
  EXPECT_TRUE(MayTake(kClassA));
}

TEST_F(ServerTest, KeepingTakesNothingOver) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kOwnClass);
  ::Run().oldVersionChoice = kOldVersionKeep;
  EXPECT_FALSE(MayTake(kClassA));
}

TEST_F(ServerTest, ARecordedInstallationKeepsTheServersState) {
  AddServer("Equation.3", kClassA, "a");
  ::Run().oldVersionChoice = kOldVersionFromScript;
  EXPECT_FALSE(MayTake(kClassA));
  Convert(kClassA, kOwnClass);
  EXPECT_TRUE(MayTake(kClassA));
}

TEST_F(ServerTest, AnUnknownChoiceIsAnInternalError) {
  AddServer("Equation.3", kClassA, "a");
  ::Run().oldVersionChoice = 4;
  AssertRecorder rec;
  EXPECT_FALSE(MayTake(kClassA));
  EXPECT_EQ(rec.Only(), "Unknown value for 'OverwriteAppState.action'");
}

// ---- conversion ----

TEST_F(ServerTest, TurningOnConvertsToTheProduct) {
  AddServer("Equation.3", kClassA, "a");
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_TRUE(COLEEquationReg(kClassA).ConvertsToUs());
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, SavedKey(kClassA)));
}

TEST_F(ServerTest, TurningOffEndsTheConversion) {
  AddServer("Equation.3", kClassA, "a");
  COLEEquationReg(kClassA).SetAutoConvert(true);
  COLEEquationReg(kClassA).SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kNoClass);
  Str target;
  EXPECT_FALSE(COLEEquationReg(kClassA).GetAutoConvert(target));
}

TEST_F(ServerTest, AThirdClassIsRememberedAndComesBack) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kClassB);
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(RegistryString(HKEY_LOCAL_MACHINE, SavedKey(kClassA), ""), kClassB);
  COLEEquationReg(kClassA).SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kClassB);
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, SavedKey(kClassA)));
}

TEST_F(ServerTest, ASettingThatAlreadyMatchesIsLeftAlone) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kClassB);
  COLEEquationReg(kClassA).SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kClassB);

  Convert(kClassA, kOwnClass);
  const ProfileGuard guard("embedding", "Equation.3");
  WriteProfileStringA("embedding", "Equation.3", "old server");
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ProfileString("embedding", "Equation.3"), "old server");
}

TEST_F(ServerTest, TurningOnDeletesTheEmbeddingLine) {
  AddServer("Equation.3", kClassA, "a");
  const ProfileGuard guard("embedding", "Equation.3");
  const ProfileGuard other("embedding", "Equation.VtTest");
  WriteProfileStringA("embedding", "Equation.3", "Equation,Equation,C:\\eq.exe,picture");
  WriteProfileStringA("embedding", "Equation.VtTest", "stays");
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ProfileString("embedding", "Equation.3"), "");
  EXPECT_EQ(ProfileString("embedding", "Equation.VtTest"), "stays");
}

TEST_F(ServerTest, TurningOnAClassWithoutProgIdKeepsTheEmbeddingSection) {
  AddClass(kClassA, "a");
  const ProfileGuard guard("embedding", "Equation.VtTest");
  WriteProfileStringA("embedding", "Equation.VtTest", "stays");
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(ProfileString("embedding", "Equation.VtTest"), "stays");
}

TEST_F(ServerTest, AnUnregisteredClassIsLeftAlone) {
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), "");
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, ClassKey(kClassA)));
}

TEST_F(ServerTest, ARememberedTextThatIsNoClassEndsTheConversion) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kOwnClass);
  SetRegistryString(HKEY_LOCAL_MACHINE, SavedKey(kClassA), "", "no class");
  COLEEquationReg(kClassA).SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kNoClass);
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, SavedKey(kClassA)));
}

TEST_F(ServerTest, WithoutAStoreNothingIsRememberedAndTheConversionWorks) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kClassB);
  for (const char* store : {"", "C:\\file.ini", "REG*HKEY_NOWHERE\\x", "REG*HKEY_LOCAL_MACHINE"}) {
    AppSetVariable("MachRegKey", store);
    Convert(kClassA, kClassB);
    COLEEquationReg(kClassA).SetAutoConvert(true);
    EXPECT_EQ(ConvertsTo(kClassA), kOwnClass) << store;
    COLEEquationReg(kClassA).SetAutoConvert(false);
    EXPECT_EQ(ConvertsTo(kClassA), kNoClass) << store;
  }
  EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, "OldOLEAutoConverts"));
}

TEST_F(ServerTest, WithoutAClassOfTheProductTheConversionStays) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kClassB);
  for (const char* classId : {"", "no class"}) {
    AppSetVariable("ClassId", classId);
    COLEEquationReg(kClassA).SetAutoConvert(true);
    EXPECT_EQ(ConvertsTo(kClassA), kClassB) << classId;
    EXPECT_FALSE(RegistryKeyExists(HKEY_LOCAL_MACHINE, SavedKey(kClassA))) << classId;
  }
}

TEST_F(ServerTest, ServersThatConvertToEachOtherAreSetOneByOne) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.2", kClassB, "b");
  Convert(kClassA, kClassB);
  Convert(kClassB, kClassA);
  for (const auto& server : ListEquationServers(ServerChoice::kAll)) server->SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(ConvertsTo(kClassB), kOwnClass);
  for (const auto& server : ListEquationServers(ServerChoice::kAll)) server->SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kClassB);
  EXPECT_EQ(ConvertsTo(kClassB), kClassA);
}

TEST_F(ServerTest, LoopsThroughTheServerItselfOrTheProductEnd) {
  AddServer("Equation.3", kClassA, "a");
  Convert(kClassA, kClassA);
  Convert(kOwnClass, kClassA);
  COLEEquationReg(kClassA).SetAutoConvert(true);
  EXPECT_EQ(ConvertsTo(kClassA), kOwnClass);
  EXPECT_EQ(ConvertsTo(kOwnClass), kClassA);
  COLEEquationReg(kClassA).SetAutoConvert(false);
  EXPECT_EQ(ConvertsTo(kClassA), kClassA);
}

// ---- preference stores ----

TEST_F(ServerTest, PreferencesOfTheKnownServers) {
  AddServer("Equation.3", kClassA, "a");
  AddServer("Equation.2", kClassB, "b");
  AddServer("Equation.COEE2", kClassC, "c");
  EXPECT_EQ(PreferencesOf(kClassA),
            "REG*HKEY_CURRENT_USER\\Software\\Microsoft\\Equation Editor\\3.0\\Options");
  EXPECT_EQ(PreferencesOf(kClassB),
            "REG*HKEY_CURRENT_USER\\Software\\Microsoft\\Equation Editor\\2.0\\Options");
  EXPECT_EQ(PreferencesOf(kClassC), "C:\\windows\\Eqnedit.ini");
}

TEST_F(ServerTest, TheThirdReleaseHasNoPreferences) {
  AddServer("Equation.KVRX36", kClassA, "a", "C:\\old\\veltrane.exe");
  EXPECT_EQ(PreferencesOf(kClassA), "none");
}

TEST_F(ServerTest, PreferencesOfAFirstEditionLieBesideIt) {
  AddServer("Equation", kClassA, "a", "\"C:\\old one\\eqnedit.exe\" -x");
  AddServer("Equation.1", kClassB, "b", "C:\\one\\eq.exe");
  EXPECT_EQ(PreferencesOf(kClassA), "C:\\old one\\eqnedit.ini");
  EXPECT_EQ(PreferencesOf(kClassB), "C:\\one\\eqnedit.ini");
}

TEST_F(ServerTest, PreferencesOfTheOldProgramLieBesideIt) {
  AddServer("Equation", kClassA, "a", "C:\\old\\VELTRANE.EXE");
  AddServer("Equation.KVRX3", kClassB, "b", "C:\\third\\vt.exe");
  EXPECT_EQ(PreferencesOf(kClassA), "C:\\old\\veltrane.ini");
  EXPECT_EQ(PreferencesOf(kClassB), "C:\\third\\veltrane.ini");
}

TEST_F(ServerTest, PreferencesBesideAnUnknownProgramAreNone) {
  AddServer("Equation", kClassA, "a");
  EXPECT_EQ(PreferencesOf(kClassA), "none");
}

TEST_F(ServerTest, ReleasesBeforeTheThirdHaveNone) {
  AddServer("Equation.KVRX2", kClassA, "a", "C:\\old\\veltrane.exe");
  EXPECT_EQ(PreferencesOf(kClassA), "none");
}

TEST_F(ServerTest, PreferencesOfLaterOnesLieInTheRegistry) {
  AddServer("Equation.KVRX4", kClassA, "a");
  AddServer("Equation.ABCD2", kClassB, "b");
  AddServer("Equation.5", kClassC, "c");
  EXPECT_EQ(PreferencesOf(kClassA), "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX4\\Preferences");
  EXPECT_EQ(PreferencesOf(kClassB), "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\ABCD2\\Preferences");
  EXPECT_EQ(PreferencesOf(kClassC), "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\5\\Preferences");
  // No variable of a script leads to another store.
  AppSetVariable("AppKey", "KVRX9");
  AppSetVariable("Root", "REG*HKEY_LOCAL_MACHINE\\Software");
  EXPECT_EQ(PreferencesOf(kClassA), "REG*HKEY_CURRENT_USER\\Software\\Quorvale\\KVRX4\\Preferences");
}

}  // namespace
