#include "script/tempnotes.h"

#include <windows.h>

#include <string>
#include <utility>

#include "base/errormode.h"
#include "base/handle.h"
#include "base/leadbyte.h"
#include "messages/filelog.h"
#include "messages/logfile.h"
#include "messages/varlist.h"
#include "platform/fs.h"
#include "script/leftovers.h"

namespace {

constexpr char kListName[] = "QLSetup.lst";
constexpr DWORD kMaxListSize = 1 << 20;  // bytes

// The list of this run.
struct TempNotes {
  int32_t depth = 0;
  bool refused = false;  // the list could not be made: not tried again in this scope
  FS::TempNameHook formerHook = nullptr;
  Str path;
  FileHandle file;
  std::vector<LeftoverNotes::Folder> folders;
};
TempNotes gNotes;

Str ListPath() {
  const Str dir = AppGetExpanded("TempDir");
  return dir.IsEmpty() ? Str() : JoinPath(dir, kListName);
}

bool SameName(const std::string& a, const char* b) { return Str::ICompare(a.c_str(), b) == 0; }

std::vector<std::string> InstallTempNames(const char* dir) {
  std::vector<std::string> names;
  const CriticalErrorGuard guard;
  WIN32_FIND_DATAA entry;
  FindHandle search(FindFirstFileA(JoinPath(dir, "ver*.tmp"), &entry));
  if (!search) return names;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && IsInstallTempName(entry.cFileName))
      names.emplace_back(entry.cFileName);
  } while (FindNextFileA(search.Get(), &entry));
  return names;
}

void SweepFolder(const LeftoverNotes::Folder& folder) {
  for (const std::string& name : InstallTempNames(folder.dir.c_str())) {
    bool wasThere = false;
    for (const std::string& kept : folder.keep) wasThere = wasThere || SameName(kept, name.c_str());
    if (!wasThere) LoggedDelete(JoinPath(folder.dir.c_str(), name.c_str()));
  }
}

// Takes the list that an earlier run left; empty when there is none or another run holds it.
std::string TakeOldList(const Str& path) {
  std::string text;
  FileHandle file(CreateFileA(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return text;
  const DWORD size = GetFileSize(file.Get(), nullptr);
  if (size == INVALID_FILE_SIZE || size > kMaxListSize) return text;
  text.resize(size);
  DWORD got = 0;
  if (!ReadFile(file.Get(), text.data(), size, &got, nullptr)) got = 0;
  text.resize(got);
  return text;
}

bool OpenList() {
  if (gNotes.file) return true;
  if (gNotes.depth == 0 || gNotes.refused) return false;
  DeleteLeftovers();
  gNotes.path = ListPath();
  if (!gNotes.path.IsEmpty()) {
    const CriticalErrorGuard guard;
    gNotes.file.Reset(
        CreateFileA(gNotes.path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  }
  gNotes.refused = !gNotes.file;
  if (gNotes.refused) LogLine("The list of temporary files could not be made.");
  return !gNotes.refused;
}

void Write(const std::string& note) {
  if (!OpenList()) return;
  DWORD written = 0;
  if (!WriteFile(gNotes.file.Get(), note.data(), static_cast<DWORD>(note.size()), &written, nullptr) ||
      written != note.size())
    LogLine("The list of temporary files could not be written.");
}

const LeftoverNotes::Folder* FindNoted(const char* dir) {
  for (const LeftoverNotes::Folder& folder : gNotes.folders)
    if (SameName(folder.dir, dir)) return &folder;
  return nullptr;
}

}  // namespace

TempNotesScope::TempNotesScope() {
  if (++gNotes.depth == 1) gNotes.formerHook = FS::SetTempNameHook(NoteTempFile);
}

TempNotesScope::~TempNotesScope() {
  if (--gNotes.depth > 0) return;
  FS::SetTempNameHook(gNotes.formerHook);
  if (gNotes.file) {
    gNotes.file.Reset();
    DeleteFileA(gNotes.path);
  }
  gNotes = TempNotes();
}

void NoteInstallFolder(const char* dir) {
  if (FindNoted(dir) != nullptr) return;
  LeftoverNotes::Folder folder{dir, InstallTempNames(dir)};
  Write(FolderNote(folder.dir, folder.keep));
  gNotes.folders.push_back(std::move(folder));
}

void NoteTempFile(const char* path) { Write(FileNote(path)); }

void ForgetTempFile(const char* path) { Write(ForgetNote(path)); }

void SweepInstallFolder(const char* dir) {
  if (const LeftoverNotes::Folder* folder = FindNoted(dir)) SweepFolder(*folder);
}

void DeleteLeftovers() {
  const Str path = ListPath();
  if (path.IsEmpty() || gNotes.file || !FS::Exists(path)) return;
  const LeftoverNotes notes = ParseLeftoverNotes(TakeOldList(path));
  for (const LeftoverNotes::Folder& folder : notes.folders) SweepFolder(folder);
  for (const std::string& file : notes.files)
    if (IsOwnTempPath(file, IsAnsiLeadByte) && FS::IsFile(file.c_str())) LoggedDelete(file.c_str());
  // Fails while another run holds the list, which is then left to it.
  DeleteFileA(path);
}
