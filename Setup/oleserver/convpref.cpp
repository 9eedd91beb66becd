#include "oleserver/convpref.h"

#include "base/assert.h"
#include "fonts/font.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "oleserver/regmgr.h"
#include "platform/WinRegistry.h"
#include "stores/ini.h"
#include "stores/profile.h"

namespace {

constexpr char kStyles[] = "Styles";
constexpr char kSubstitutesKey[] =
    "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes";
constexpr int32_t kProfileSize = 512;

bool gConverted = false;

Str BeforeComma(const Str& text) {
  const int32_t comma = text.Find(',');
  Str head;
  head.Left(text, comma < 0 ? text.Length() : comma);
  return head;
}

// From the first comma on, the comma included.
Str FromComma(const Str& text) {
  const int32_t comma = text.Find(',');
  Str tail;
  if (comma >= 0) tail.SetSubstring(text, comma, -1);
  return tail;
}

bool CopySectionAs(IniStore* source, const char* from, IniStore* target, const char* to) {
  if (!IniFindSection(source, from)) return false;
  if (!IniSetSection(target, to, IniCopySection(source))) return false;
  // The copy, now the target's current section, brought its old header line along.
  if (!Str::Equal(from, to)) IniRenameSection(target, to);
  return true;
}

void CopyMissing(IniStore* source, IniStore* target, const char* section) {
  if (!IniFindSection(target, section)) CopySectionAs(source, section, target, section);
}

// Section that older editors kept per printer; false without a default printer.
bool DefaultPrinterSection(Str& section) {
  Str rest = FromComma(ProfileText("windows", "device", kProfileSize));
  if (rest.IsEmpty()) return false;
  rest.Delete(0, 1);
  const Str driver = BeforeComma(rest);
  Str port = FromComma(rest);
  if (port.IsEmpty()) return false;
  port.Delete(0, 1);
  section = Message("Printer,<PrinterDriver>,<PrinterPort>", kTemplateLiteral)
                .With("PrinterDriver", driver)
                .With("PrinterPort", port)
                .Text();
  return true;
}

void CopyStyles(IniStore* source, IniStore* target) {
  if (IniFindSection(target, kStyles) || CopySectionAs(source, "Fonts", target, kStyles)) return;
  Str section;
  if (DefaultPrinterSection(section)) CopySectionAs(source, section, target, kStyles);
}

void AdjustUserStyles(IniStore* target, bool ownProduct) {
  Str value;
  if (!ownProduct) {
    for (const char* key : {"User1", "User2"})
      if (IniReadStr(target, key, value)) IniWriteString(target, key, "");
    return;
  }
  if (!IniReadStr(target, "User1", value) || BeforeComma(value).ICompare("Courier") != 0) return;
  Str changed("Courier New");
  changed.Append(FromComma(value));
  IniWriteString(target, "User1", changed);
}

// The other font that the system puts in this one's place. Names may carry a ",charset" tail;
// one without comes first.
bool FindSubstitute(const Str& font, Str& substitute) {
  KWinRegistry substitutes;
  if (font.IsEmpty() || !substitutes.OpenRooted(kSubstitutesKey, wrRead)) return false;
  Str name;
  Str data;
  bool found = substitutes.GetValue(font, data);
  for (uint32_t i = 0; !found && substitutes.EnumValue(i, name, data); ++i)
    found = BeforeComma(name).ICompare(font) == 0;
  substitute = BeforeComma(data);
  return found && !substitute.IsEmpty() && substitute.ICompare(font) != 0;
}

// New text of a style whose font must be adapted to this machine; false when it stays.
bool AdaptStyle(const Str& value, Str& adapted) {
  Str font = BeforeComma(value);
  Str substitute;
  const bool substituted = FindSubstitute(font, substitute);
  if (substituted) font = substitute;
  adapted = "";
  if (font.IsEmpty() || !IsFontFamilyInstalled(font)) return true;
  if (!substituted) return false;
  adapted = font;
  adapted.Append(FromComma(value));
  return true;
}

// Puts the cursor back on the key that was just written. By its place, for a key may be there twice.
void AdvanceTo(IniStore* store, int32_t place) {
  Str key;
  for (int32_t i = 0; i <= place; ++i)
    if (!IniNextKey(store, i == 0, nullptr, key, nullptr)) return;
}

void AdaptStyles(IniStore* target) {
  Str key;
  Str value;
  for (int32_t place = 0; IniNextKey(target, place == 0, nullptr, key, &value); ++place) {
    Str adapted;
    if (!AdaptStyle(value, adapted)) continue;
    IniWriteString(target, key, adapted);
    AdvanceTo(target, place);
  }
}

}  // namespace

bool ConvertPreferences(const char* inPath, const char* outPath, bool ownProduct) {
  IniStorePtr source = IniOpen(inPath, true);
  if (!source) return false;
  IniStorePtr target = IniOpen(outPath, false);
  if (!target) return false;
  CopyMissing(source.get(), target.get(), "Spacing");
  CopyMissing(source.get(), target.get(), "Sizes");
  CopyStyles(source.get(), target.get());
  if (IniFindSection(target.get(), kStyles)) {
    AdjustUserStyles(target.get(), ownProduct);
    AdaptStyles(target.get());
  }
  return true;
}

void ConvertNewestPreferences() {
  if (!VT_ASSERT(!gConverted, "! convertYet")) return;
  gConverted = true;
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  for (const COLEEquationReg* server : SortNewestFirst(servers)) {
    Str inPath;
    if (!server->GetPreferencePath(inPath)) continue;
    const Str outPath = AppGetExpanded("UserRegKey");
    const bool converted = ConvertPreferences(inPath, outPath, server->Description().own);
    LogLine(Message("    Convert VT preferences: <InPath> to <OutPath>, result: <Result>", kTemplateLiteral)
                .With("InPath", inPath)
                .With("OutPath", outPath)
                .With("Result", converted ? "Success" : "Fail"));
    return;
  }
}

void ResetPreferenceConversion() { gConverted = false; }
