#include "shell/shortcut.h"

#include <windows.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <string_view>

#include "base/assert.h"
#include "base/com.h"
#include "base/runstate.h"
#include "base/string.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/folders.h"
#include "platform/fs.h"
#include "platform/fsdirit.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kCreatingGroup = 324;
constexpr unsigned kRemovingIcons = 325;
constexpr char kOldGroup[] = "Veltrane";
constexpr char kLinkExtension[] = ".lnk";
constexpr int32_t kMaxLinkText = 259;

std::vector<LinkRecord> gLinks;

void NotifyShell(LONG event, const char* path) { SHChangeNotify(event, SHCNF_PATHA, path, nullptr); }

// A path that was cut would name another file: its link is not made.
bool PathsFit(const LinkRecord& link) {
  for (const Str* path : {&link.name, &link.pathname, &link.iconPath})
    if (path->Length() > kMaxLinkText) return false;
  return true;
}

void CutToRoom(Str& text) {
  if (VT_ASSERT(text.Length() <= kMaxLinkText, "Str::Length(text) <= kMaxLinkText")) return;
  text.Delete(kMaxLinkText, -1);
}

// The description and the arguments keep what they have room for.
LinkRecord FittingLink(const LinkRecord& link) {
  LinkRecord fitting = link;
  CutToRoom(fitting.desc);
  CutToRoom(fitting.args);
  return fitting;
}

// Windows drops dots and blanks at a name's end: a part of a path that holds nothing else is the folder
// itself, or the one above.
bool HasDotsOnlyPart(std::string_view path) {
  while (!path.empty()) {
    const std::string_view part = path.substr(0, path.find('\\'));
    if (!part.empty() && part.find_first_not_of(". ") == std::string_view::npos) return true;
    path.remove_prefix(std::min(part.size() + 1, path.size()));
  }
  return false;
}

// An empty name, or one that climbs out of the Programs folder, would reach other products' icons.
bool IsGroupName(const Str& group) {
  const std::string_view name = group.View();
  if (!name.empty() && name.front() != '\\' && name.find_first_of(":/") == std::string_view::npos &&
      !HasDotsOnlyPart(name))
    return true;
  LogError(Message("    \"<ProgGroup>\" is no name of a program group.", kTemplateLiteral)
               .With("ProgGroup", group));
  return false;
}

bool GroupFolder(const Str& group, Str& folder) {
  Str shortcutFolder;
  if (!VT_ASSERT(GetShortcutFolder(shortcutFolder), "App::GetShortcutFolder(1,shortcutFolder)")) return false;
  folder = JoinPath(shortcutFolder, group);
  return true;
}

// Deletes a folder with all it holds through the shell, without any window.
bool DeleteFolderTree(const Str& folder) {
  Str from(folder);
  char* text = from.Lock(folder.Length() + 2);  // the shell wants a list, ended by a second NUL
  text[folder.Length() + 1] = '\0';
  SHFILEOPSTRUCTA operation = {};
  operation.wFunc = FO_DELETE;
  operation.pFrom = text;
  operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
  const bool deleted =
      SHFileOperationA(&operation) == 0 && !operation.fAnyOperationsAborted && !FS::Exists(folder);
  from.Unlock();
  return deleted;
}

bool DeleteGroup(const Str& group) {
  Str folder;
  if (!GroupFolder(group, folder) || !FS::IsDir(folder) || !DeleteFolderTree(folder)) return false;
  NotifyShell(SHCNE_RMDIR, folder);
  return true;
}

void LogLinkFailure(const LinkRecord& link, const Str& linkPath) {
  LogLine(Message("    <SetupName> couldn't create the following link file: <LinkFile>.\n"
                  "      desc:      <Desc>\n"
                  "      pathname:\t<Path>\n"
                  "      args:      <Args>\n"
                  "      iconPath:  <IconPath>\n"
                  "      iconIndex: <IconIdx>")
              .With("LinkFile", linkPath)
              .With("Desc", link.desc)
              .With("Path", link.pathname)
              .With("Args", link.args)
              .With("IconPath", link.iconPath.IsEmpty() ? "<none>" : link.iconPath.Chars())
              .With("IconIdx", link.iconIndex));
}

void CreateGroupLinks(const Str& folder) {
  for (const LinkRecord& link : gLinks) {
    // The ending comes first: a link without a name must not become one that lies beside the folder.
    Str fileName(link.name);
    fileName.Append(kLinkExtension);
    const Str linkPath = JoinPath(folder, fileName);
    if (!CreateLinkFile(link, linkPath)) LogLinkFailure(link, linkPath);
  }
}

bool HasLinkExtension(const Str& path) {
  Str ext;
  return !path.IsEmpty() && FSPath(path).GetExtension(ext) && ext.ICompare(kLinkExtension) == 0;
}

}  // namespace

bool GetShortcutFolder(Str& folder) { return Folders::GetProgramsDir(folder); }

bool CreateLinkFile(const LinkRecord& link, const char* linkPath) {
  const bool hasTarget = VT_ASSERT(Str::Length(link.pathname), "Str::Length(linkRec.pathname)");
  const bool hasDescription = VT_ASSERT(Str::Length(link.desc), "Str::Length(linkRec.desc)");
  if (!hasTarget || !hasDescription || !PathsFit(link) || Str::Length(linkPath) >= FS::kMaxPathNameLen)
    return false;
  const ComScope com;
  ComPtr<IShellLinkA> shellLink;
  ComPtr<IPersistFile> file;
  if (FAILED(
          CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA, shellLink.Put())))
    return false;
  // S_FALSE says only that the target is not there (yet).
  if (FAILED(shellLink->SetPath(link.pathname)) || FAILED(shellLink->SetDescription(link.desc))) return false;
  if (!link.args.IsEmpty() && FAILED(shellLink->SetArguments(link.args))) return false;
  if (!link.iconPath.IsEmpty() && FAILED(shellLink->SetIconLocation(link.iconPath, link.iconIndex)))
    return false;
  if (FAILED(shellLink->QueryInterface(IID_IPersistFile, file.Put()))) return false;
  FS::SetFileAttribute(linkPath, FS::kAttrLock, false);
  WStr widePath;
  widePath = linkPath;
  if (FAILED(file->Save(widePath, TRUE))) return false;
  NotifyShell(SHCNE_CREATE, linkPath);
  return true;
}

void AddGroupLink(const LinkRecord& link) { gLinks.push_back(FittingLink(link)); }

void CreateProgramGroup(const Str& group) {
  if (Run().oldVersionChoice == kOldVersionReplace) {
    DeleteGroup(kOldGroup);
    LogLine("Overwriting old app. Removing old \"Veltrane\" program group.");
  }
  SetProgressText(Message(kCreatingGroup).With("IconGroup", group));
  Str folder;
  if (!IsGroupName(group) || !GroupFolder(group, folder)) {
    gLinks.clear();
    return;
  }
  if (!FS::CreateDir(folder)) {
    LogError(Message("Couldn't create program group folder, <ShortcutFolder>.", kTemplateLiteral)
                 .With("ShortcutFolder", folder));
    gLinks.clear();
    return;
  }
  LogLine(Message("Successfully created program group folder, <ShortcutFolder>.", kTemplateLiteral)
              .With("ShortcutFolder", folder));
  NotifyShell(SHCNE_MKDIR, folder);
  CreateGroupLinks(folder);
  if (FS::Exists(folder)) NotifyShell(SHCNE_UPDATEDIR, folder);
  gLinks.clear();
}

void EmptyProgramGroup(const Str& group) {
  SetProgressText(Message(kRemovingIcons).With("IconGroup", group));
  Str folder;
  if (!IsGroupName(group) || !GroupFolder(group, folder)) return;
  bool emptied = FS::IsDir(folder);
  if (emptied) {
    FS::DirIterator entries(folder, FS::DirIterator::modeFiles, false);
    Str path;
    bool isDir = false;
    while (entries.Next(path, isDir)) {
      if (!HasLinkExtension(path)) continue;
      if (FS::Delete(path))
        NotifyShell(SHCNE_DELETE, path);
      else
        emptied = false;
    }
  }
  if (!emptied)
    LogLine(Message("    Failed: couldn't empty the <ProgGroup> program group.", kTemplateLiteral)
                .With("ProgGroup", group));
}

void RemoveProgramGroup(const Str& group) {
  SetProgressText(Message(kRemovingIcons).With("IconGroup", group));
  if (!IsGroupName(group)) return;
  if (!DeleteGroup(group))
    LogLine(Message("    Couldn't delete the <ProgGroup> program group (maybe it didn't exist).",
                    kTemplateLiteral)
                .With("ProgGroup", group));
}

void CreateSingleLink(const LinkRecord& link) {
  Str linkPath(link.name);
  bool ready = !link.name.IsEmpty();
  if (ready && !FSPath(link.name).IsFullPath()) {
    Str folder;
    ready = GetShortcutFolder(folder);
    linkPath = JoinPath(folder, link.name);
  }
  if (!HasLinkExtension(linkPath)) linkPath.Append(kLinkExtension);
  ready = ready && FS::CreateDir(FSPath(linkPath).Parent());
  if (!ready || !CreateLinkFile(FittingLink(link), linkPath))
    LogLine(
        Message("    Couldn't create link file <LinkFile>.", kTemplateLiteral).With("LinkFile", linkPath));
}
