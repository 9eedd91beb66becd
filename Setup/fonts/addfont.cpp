#include "fonts/addfont.h"

#include <windows.h>

#include "base/assert.h"
#include "base/runstate.h"
#include "fonts/font.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fio.h"
#include "platform/fs.h"
#include "script/files.h"
#include "script/fullpath.h"
#include "ui/err.h"

namespace {

enum MessageId : unsigned {
  kDestReadOnly = 4104,
  kFolderReadOnly = 4105,
  kCannotInstall = 4106,
  kCannotRemove = 4108,
  kCannotDelete = 4109,
  kNameUnreadable = 4110,
  kRemoveByHand = 4111,
  kAddByHand = 4112,
  kNeededByProduct = 4114,
};

constexpr char kInstallFailure[] = "TrueType font installation failure: ";

void LogInstallFailure(const char* what, const char* item, const char* value) {
  Str text(kInstallFailure);
  text.Append(what);
  Message line(text);
  if (item) line.With(item, value);
  LogLine(line);
}

int32_t Major(uint32_t version) { return static_cast<int32_t>(version >> 16); }
int32_t Minor(uint32_t version) { return static_cast<int32_t>(version & 0xFFFF); }

// What the user can do about a font that stays: while installing the product needs the new one.
Str RemovalInstructions() {
  return MakeTemplate(Run().install ? kNeededByProduct : kRemoveByHand, kTemplateExpand);
}

// Always false, so that callers can return it; so for ShowNameUnreadable.
bool ShowCannotInstall(const char* fontName, const char* sourcePath) {
  ShowError(Message(kCannotInstall)
                .With("FontName", fontName)
                .With("FontPath", sourcePath)
                .With("Instructions", MakeTemplate(kAddByHand, kTemplateExpand)));
  return false;
}

enum class Installed { kNo, kKept, kReplaced, kFailed };

// Decides about a font of the same family that is there already, and takes an older or equal one out.
Installed HandleInstalledFont(const TrueTypeData& font, const char* sourcePath) {
  if (!IsFontFamilyInstalled(font.familyName)) return Installed::kNo;
  Str valueName;
  Str regFile;
  if (!FindRegistryFont(font.fullName, valueName, regFile)) {
    // Another style of the family only: this one is new.
    if (IsFamilyInRegistry(font.familyName)) return Installed::kNo;
    LogInstallFailure("couldn't get the filename from the registry for the installed font <FontName>.",
                      "FontName", font.fullName);
    return Installed::kFailed;
  }
  Str installedPath;
  if (!RegistryFontPath(regFile, installedPath)) {
    LogInstallFailure("couldn't convert the font's filename (<FontFile>) to the full path.", "FontFile",
                      regFile);
    return Installed::kFailed;
  }
  TrueTypeData installed;
  if (!ReadTrueTypeFile(installedPath, installed)) installed.version = 0;
  if (installed.version > font.version) {
    LogLine(
        Message("   TrueType font installation [<FontName>]: installed font's version "
                "(<InstalledMajVer:d>.<InstalledMinVer:d>) is newer/later than the font we're attempting to "
                "install (<NewMajVer:d>.<NewMinVer:d>). <SetupName> will keep the installed font.\n")
            .With("FontName", font.fullName)
            .With("InstalledMajVer", Major(installed.version))
            .With("InstalledMinVer", Minor(installed.version))
            .With("NewMajVer", Major(font.version))
            .With("NewMinVer", Minor(font.version)));
    return Installed::kKept;
  }
  // A font that stays has been reported; the new one goes in beside it. A font that was installed from where
  // it lies is the very file to be copied now, and is only taken out of the list.
  static_cast<void>(UninstallFontByName(font.fullName, !IsSamePath(sourcePath, installedPath)));
  return Installed::kReplaced;
}

// True when the failed copy was reported with its own message.
bool ReportCopyFailure(const char* fontName, const FSPath& dest) {
  bool locked = false;
  if (FS::GetFileAttribute(dest, FS::kAttrLock, locked) && locked) {
    ShowError(Message(kDestReadOnly).With("FontName", fontName).With("DestFontPath", dest));
    return true;
  }
  const Str folder = dest.Parent();
  if (FS::GetFileAttribute(folder, FS::kAttrLock, locked) && locked) {
    ShowError(Message(kFolderReadOnly).With("FontName", fontName).With("FontFolder", folder));
    return true;
  }
  return false;
}

// Copies, registers and loads the font; the destination may get another name.
bool PlaceFont(const TrueTypeData& font, const char* sourcePath, const char* destPath, bool deleteSource) {
  Str dest(destPath);
  // A name too long to be numbered stays.
  if (GetUniqueName(dest) && dest.ICompare(destPath) != 0)
    LogLine(
        Message("InstallTTFont: destination pathname changed from <OrigPath> to <NewPath>, due to a filename "
                "collision.",
                kTemplateLiteral)
            .With("OrigPath", destPath)
            .With("NewPath", dest));
  if (!FS::Copy(sourcePath, dest, false)) {
    if (!ReportCopyFailure(font.fullName, FSPath(dest))) ShowCannotInstall(font.fullName, sourcePath);
    return false;
  }
  if (deleteSource) FS::Delete(sourcePath);
  if (!WriteFontToRegistry(font.fullName, dest)) {
    LogInstallFailure("couldn't write the font data to the registry.", nullptr, nullptr);
    return ShowCannotInstall(font.fullName, sourcePath);
  }
  if (AddFontResourceA(dest) == 0) {
    LogInstallFailure("couldn't add the font resource to Windows.", nullptr, nullptr);
    return ShowCannotInstall(font.fullName, sourcePath);
  }
  return true;
}

// The withdrawal fails for a font that was never loaded; only a file that is still held counts as refused.
bool IsWithdrawalRefused(const char* path) {
  if (RemoveFontResourceA(path) != 0 || !FS::IsFile(path)) return false;
  bool locked = false;
  if (FS::GetFileAttribute(path, FS::kAttrLock, locked) && locked) return false;
  FioFile file;
  return FioOpen(path, fioWRITE, file) != fioOK;
}

bool DeleteFontFile(const char* fullName, const char* path) {
  if (!FS::Exists(path)) {
    LogLine(Message("Uninstall Font: <FontFile> doesn't exist!!", kTemplateLiteral).With("FontFile", path));
    return true;
  }
  if (FS::Delete(path)) return true;
  LogLine(Message("Uninstall Font: could delete <FontFile>", kTemplateLiteral).With("FontFile", path));
  ShowError(Message(kCannotDelete).With("FontName", fullName).With("Instructions", RemovalInstructions()));
  return false;
}

bool ShowNameUnreadable(const FSPath& path) {
  ShowError(Message(kNameUnreadable)
                .With("FontName", path.BaseName())
                .With("FileName", path)
                .With("Instructions", MakeTemplate(kRemoveByHand, kTemplateExpand)));
  return false;
}

}  // namespace

bool InstallTTFont(const char* sourcePath, const char* destPath, bool deleteSource) {
  if (!sourcePath || !*sourcePath) {
    LogLine("Bad param in InstallTTFont: 'sourcePath' is empty or NULL.");
    return false;
  }
  if (!destPath || !*destPath) {
    LogLine("Bad param in InstallTTFont: 'destPath' is empty or NULL.");
    return false;
  }
  TrueTypeData font;
  if (!ReadTrueTypeFile(sourcePath, font)) {
    LogInstallFailure("couldn't read data from the font file <FontFile>.", "FontFile", sourcePath);
    return ShowCannotInstall(FSPath(sourcePath).BaseName(), sourcePath);
  }
  switch (HandleInstalledFont(font, sourcePath)) {
    case Installed::kKept:
      return true;
    case Installed::kFailed:
      return ShowCannotInstall(font.fullName, sourcePath);
    case Installed::kNo:
    case Installed::kReplaced:
      break;
  }
  return PlaceFont(font, sourcePath, destPath, deleteSource);
}

bool UninstallTTFont(const char* fontPath) {
  if (!fontPath || !*fontPath) {
    LogLine("Bad param in UninstallTTFont: 'fontPath' is empty");
    return false;
  }
  if (!FS::Exists(fontPath)) {
    LogLine(
        Message("   UninstallTTFont: font file <FileName> doesn't exist = Success (nothing to uninstall).",
                kTemplateLiteral)
            .With("FileName", fontPath));
    return true;
  }
  const FSPath path(fontPath);
  Str ext;
  path.GetExtension(ext);
  if (!VT_ASSERT(ext.Length() == 4, "ext.Length() == 4") || ext.ICompare(".TTF") != 0)
    return ShowNameUnreadable(path);
  TrueTypeData font;
  if (!ReadTrueTypeFile(fontPath, font)) return ShowNameUnreadable(path);
  return UninstallFontByName(font.fullName, true, fontPath);
}

bool UninstallFontByName(const char* fullName, bool removeFile, const char* fontPath) {
  Str valueName;
  Str path;
  const bool listed = FindRegistryFont(fullName, valueName, path);
  if (!listed && !fontPath) {
    LogLine(Message("Uninstall Font: <FontName> is not in the font table", kTemplateLiteral)
                .With("FontName", fullName));
    return false;
  }
  if (!listed) path = fontPath;
  // A bitmap font, whose file stays, is withdrawn under the name that the list has for it.
  if (listed && removeFile && !RegistryFontPath(Str(path), path)) return false;
  if (IsWithdrawalRefused(path) || (listed && !RemoveFontFromRegistry(fullName))) {
    ShowError(Message(kCannotRemove).With("FontName", fullName).With("Instructions", RemovalInstructions()));
    return false;
  }
  if (listed)
    LogLine(Message("Successfully removed <fontname> from font table", kTemplateLiteral)
                .With("fontname", fullName));
  return !removeFile || DeleteFontFile(fullName, path);
}

void NotifyFontChange() { PostMessageA(HWND_BROADCAST, WM_FONTCHANGE, 0, 0); }
