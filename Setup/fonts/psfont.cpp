#include "fonts/psfont.h"

#include <algorithm>
#include <vector>

#include "fonts/psreader.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fio.h"
#include "platform/fs.h"
#include "ui/err.h"

namespace {

constexpr unsigned kCannotRemoveOld = 329;
// Metrics files are a few kilobytes; more than this is not read of a damaged one.
constexpr uint32_t kMaxPfmSize = 1u << 20;

void LogAbout(const char* text, const char* item, const char* value) {
  LogLine(Message(text, kTemplateLiteral).With(item, value));
}

// Up to `limit` bytes from the file's start; false when it cannot be read.
bool ReadStart(FioFile& file, uint32_t limit, std::vector<std::byte>& bytes) {
  uint32_t size = 0;
  if (FioGetSize(file, size) != fioOK) return false;
  bytes.resize(std::min(size, limit));
  uint32_t got = 0;
  return bytes.empty() || (FioRead(file, static_cast<uint32_t>(bytes.size()), bytes.data(), &got) == fioOK &&
                           got == bytes.size());
}

bool ReadPfm(const char* path, const char* missingText, std::vector<std::byte>& bytes) {
  FioFile file;
  if (!FS::Exists(path) || FioOpen(path, fioREAD, file) != fioOK) {
    LogAbout(missingText, "FilePath", path);
    return false;
  }
  if (ReadStart(file, kMaxPfmSize, bytes)) return true;
  LogAbout("PostScript data failure: couldn't read <FilePath>.", "FilePath", path);
  return false;
}

bool ReadCommentLine(const char* pfbPath, std::string& line) {
  if (!FS::Exists(pfbPath)) {
    LogAbout("    GetPSNameAndVersion error: <FontFile> does not exist.", "FontFile", pfbPath);
    return false;
  }
  FioFile file;
  if (FioOpen(pfbPath, fioREAD, file) != fioOK) {
    LogAbout("GetPSNameAndVersion: Cannot open <FontFile> for reading.", "FontFile", pfbPath);
    return false;
  }
  std::vector<std::byte> bytes;
  if (!ReadStart(file, kPfbSegmentHeader + kPfbMaxLine, bytes)) {
    LogAbout("GetPSNameAndVersion: Comment line in <FontFile> is bad.", "FontFile", pfbPath);
    return false;
  }
  switch (PfbCommentLine(bytes, line)) {
    case PfbResult::kOk:
      return true;
    case PfbResult::kNoHeader:
      LogAbout("GetPSNameAndVersion: Cannot find beginning of file, <FontFile>.", "FontFile", pfbPath);
      break;
    case PfbResult::kCutLine:
      LogAbout(
          "GetPSNameAndVersion: Comment line in <FontFile> is bad, EOF before comment was entirely read.",
          "FontFile", pfbPath);
      break;
    case PfbResult::kLongLine:
      LogAbout("GetPSNameAndVersion: Comment line in <FontFile> is larger than storage buffer.", "FontFile",
               pfbPath);
      break;
  }
  return false;
}

// What the product's own font files say.
struct NewFont {
  Str psName;
  Str windowsName;
  uint32_t version = 0;
  uint32_t style = 0;
};

bool ExamineFont(const char* pfbPath, const char* pfmPath, NewFont& font) {
  Str pfmPsName;
  if (GetPSNameAndVersion(pfbPath, &font.psName, &font.version) && GetPfmStyle(pfmPath, font.style) &&
      GetPfmNames(pfmPath, &font.windowsName, &pfmPsName))
    return true;
  LogLine(Message("    <SetupName> was unable to examine the required font files: <PFMFile> and <PFBFile>.")
              .With("PFMFile", pfmPath)
              .With("PFBFile", pfbPath));
  return false;
}

bool RemoveThroughATM(const AtmLibrary& atm, const char* windowsName, uint32_t style) {
  const int result = atm.RemoveFont(windowsName, style);
  LogLine(
      Message("ATM Api: ATMRemoveFont return value = <ATMErr>.", kTemplateLiteral).With("ATMErr", result));
  return result == 0;
}

// ATM may have deleted the file itself.
bool DeleteUnlessGone(const Str& path) { return path.IsEmpty() || !FS::Exists(path) || FS::Delete(path); }

// Takes the installed font out of ATM, with its files and its line in "Atm.ini"; false when ATM refuses.
bool RemoveInstalled(const AtmLibrary& atm, const NewFont& font, const Str& pfbPath, const Str& pfmPath) {
  if (!RemoveThroughATM(atm, font.windowsName, font.style)) return false;
  const bool fontDeleted = DeleteUnlessGone(pfbPath);
  const bool metricsDeleted = DeleteUnlessGone(pfmPath);
  Message line(fontDeleted && metricsDeleted
                   ? "    Deleted the font files: <PSFontPath>, and <PSMetricPath>."
                   : "    Couldn't delete the font files: <PSFontPath>, and <PSMetricPath>.",
               kTemplateLiteral);
  LogLine(line.With("PSFontPath", pfbPath).With("PSMetricPath", pfmPath));
  RemoveATMIniLine(font.windowsName, font.style);
  return true;
}

void LogNotInstalled(const NewFont& font) {
  LogAbout("    The font <PSFontName> was not removed because it is not installed on the user's system.",
           "PSFontName", font.psName);
}

bool FindInstalled(const AtmLibrary& atm, const NewFont& font, Str& pfbPath, Str& pfmPath) {
  if (GetATMFontPaths(atm, font.windowsName, font.style, pfbPath, pfmPath)) return true;
  LogNotInstalled(font);
  return false;
}

}  // namespace

bool GetPSNameAndVersion(const char* pfbPath, Str* name, uint32_t* version) {
  std::string line;
  PfbComment comment;
  if (!ReadCommentLine(pfbPath, line)) return false;
  if (!ParsePfbComment(line, comment)) {
    LogAbout("GetPSNameAndVersion error: The comment line in <FontFile> is malformed and cannot be parsed.",
             "FontFile", pfbPath);
    return false;
  }
  if (version && !ParsePsVersion(comment.version, *version)) {
    LogAbout("Error parsing font version in <FontFile>.", "FontFile", pfbPath);
    return false;
  }
  if (name) *name = std::string_view(comment.psName);
  return true;
}

bool GetPfmStyle(const char* pfmPath, uint32_t& style) {
  std::vector<std::byte> bytes;
  if (!ReadPfm(pfmPath,
               "PostScript data failure: couldn't get style flags as font file <FilePath> doesn't exist.",
               bytes))
    return false;
  if (PfmStyle(bytes, style)) return true;
  LogLine("PostScript data failure: opened file doesn't contain complete PFMHEADER structure.");
  return false;
}

bool GetPfmNames(const char* pfmPath, Str* faceName, Str* psName) {
  std::vector<std::byte> bytes;
  if (!ReadPfm(pfmPath,
               "PostScript data failure: couldn't get font names as font file <FilePath> doesn't exist.",
               bytes))
    return false;
  PfmNames names;
  switch (ReadPfmNames(bytes, names)) {
    case PfmResult::kShortHeader:
      LogAbout(
          "PostScript data failure: opened file <FilePath> doesn't contain complete PFMHEADER structure.",
          "FilePath", pfmPath);
      return false;
    case PfmResult::kShortExtension:
      LogAbout(
          "PostScript data failure: opened file <FilePath> doesn't contain complete PFMEXTENSION structure.",
          "FilePath", pfmPath);
      return false;
    case PfmResult::kBadName:
      LogAbout("PostScript data failure: the font names in <FilePath> lie outside the file.", "FilePath",
               pfmPath);
      return false;
    case PfmResult::kOk:
      break;
  }
  if (faceName) *faceName = std::string_view(names.faceName);
  if (psName) *psName = std::string_view(names.psName);
  return true;
}

bool GetATMFontPaths(const AtmLibrary& atm, const char* windowsName, uint32_t style, Str& pfbPath,
                     Str& pfmPath) {
  const int result = atm.GetFontPaths(windowsName, style, pfbPath, pfmPath);
  if (result == 0) return true;
  LogLine(
      Message("GetATMFontPaths: ATMGetFontPaths (ATM API) failed on font <FontName>. Error value: <ErrNum>.",
              kTemplateLiteral)
          .With("FontName", windowsName)
          .With("ErrNum", result));
  return false;
}

bool GetVersionOfATMFont(const AtmLibrary& atm, const char* windowsName, uint32_t style, uint32_t& version) {
  Str pfbPath;
  Str pfmPath;
  if (!GetATMFontPaths(atm, windowsName, style, pfbPath, pfmPath)) return false;
  if (pfbPath.IsEmpty()) {
    LogAbout("GetVersionOfATMFont: The path for font <FontName> is empty.", "FontName", windowsName);
    return false;
  }
  return GetPSNameAndVersion(pfbPath, nullptr, &version);
}

bool IsATMFontInUse(const AtmLibrary& atm, const char* windowsName, uint32_t style, int& status) {
  status = atm.FontStatus(windowsName, style);
  if (status >= AtmLibrary::kFontAbsent && status <= AtmLibrary::kFontInUse) return true;
  LogLine(Message("IsATMFontInUse: Call to 'ATMFontStatus' (ATM API) failed for <FontName>. Error: <ErrNum>.",
                  kTemplateLiteral)
              .With("FontName", windowsName)
              .With("ErrNum", status));
  return false;
}

void RemoveATMIniLine(const char* windowsName, uint32_t style) {
  const Str iniFile = JoinPath(AppGetExpanded("WinDir"), "Atm.ini");
  if (!FS::Exists(iniFile)) {
    LogAbout("RemoveATMIniLine: <IniFile> doesn't exist.", "IniFile", iniFile);
    return;
  }
  Str key(windowsName);
  if ((style & (kPsBold | kPsItalic)) != 0) key.Append(',');
  if ((style & kPsBold) != 0) key.Append("BOLD");
  if ((style & kPsItalic) != 0) key.Append("ITALIC");
  if (!WritePrivateProfileStringA("FONTS", key, nullptr, iniFile))
    LogLine(Message("RemoveATMIniLine: Couldn't remove font <FontName> from <IniFile>.", kTemplateLiteral)
                .With("FontName", windowsName)
                .With("IniFile", iniFile));
}

void RemovePSFont(const AtmLibrary& atm, const char* pfbPath, const char* pfmPath) {
  NewFont font;
  Str installedPfb;
  Str installedPfm;
  int status = 0;
  if (!ExamineFont(pfbPath, pfmPath, font) || !FindInstalled(atm, font, installedPfb, installedPfm)) return;
  if (IsATMFontInUse(atm, font.windowsName, font.style, status) && status == AtmLibrary::kFontInUse) {
    LogLine(Message("    The font <PSFontName> was not removed because it is in use. Status: <Status>.",
                    kTemplateLiteral)
                .With("PSFontName", font.psName)
                .With("Status", status));
    return;
  }
  // A refusal is only logged: the product's own font may stay without harm.
  static_cast<void>(RemoveInstalled(atm, font, installedPfb, installedPfm));
}

void RemoveOldPSFont(const AtmLibrary& atm, const char* pfbPath, const char* pfmPath) {
  NewFont font;
  Str installedPfb;
  Str installedPfm;
  uint32_t installedVersion = 0;
  if (!ExamineFont(pfbPath, pfmPath, font) || !FindInstalled(atm, font, installedPfb, installedPfm)) return;
  if (!GetVersionOfATMFont(atm, font.windowsName, font.style, installedVersion)) {
    if (installedPfb.IsEmpty() || !FS::Exists(installedPfb)) LogNotInstalled(font);
    return;
  }
  if (installedVersion >= font.version) {
    LogAbout(
        "    The installed font <PSFontName> is either the same as or newer than the one we're attempting to "
        "install. For this reason, the installed ATM font was not removed.",
        "PSFontName", font.psName);
    return;
  }
  if (!RemoveInstalled(atm, font, installedPfb, installedPfm))
    ShowError(Message(kCannotRemoveOld).With("PSFontName", font.psName));
}
