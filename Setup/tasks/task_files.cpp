// File tasks: file_sys (no pass number, or pass 0), dir_del (no pass number, or pass 1), file_inst (always).
#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fs.h"
#include "script/filetree.h"
#include "script/setupinf.h"
#include "script/verscopy.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

struct Operation {
  const char* name;
  bool (*run)(const char* path1, const char* path2);
  bool needsPath2;
  const char* failure;
};

bool DeleteIt(const char* path1, const char* /*path2*/) { return DeleteFileOrEmptyDir(path1); }

constexpr Operation kOperations[] = {
    {"delete", DeleteIt, false, "    Attempt to delete the existing file, <FileName>, failed."},
    {"rename", FS::Rename, true,
     "    Attempt to rename the existing file/dir, <FilePath1> to <FilePath2>, failed<ExtraMsg>."},
    {"copy", CopyFileOrTree, true,
     "    Attempt to copy the existing file/dir, <FilePath1> to <FilePath2>, failed<ExtraMsg>."},
};

const Operation* FindOperation(const Str& name) {
  for (const Operation& operation : kOperations)
    if (name.ICompare(operation.name) == 0) return &operation;
  return nullptr;
}

void RunOperation(const char* task, const Operation& operation, const Str& arg1, const Str& arg2) {
  if (!VT_ASSERT(arg1.Length() > 0, "arg1.Length()") ||
      (operation.needsPath2 && !VT_ASSERT(arg2.Length() > 0, "arg2.Length()"))) {
    LogUnknownArgs(task);
    return;
  }
  if (!FS::Exists(arg1) || operation.run(arg1, arg2)) return;
  const bool taken = operation.needsPath2 && FS::Exists(arg2);
  LogLine(Message(operation.failure, kTemplateLiteral)
              .With("ExtraMsg", taken ? " because the target path already exists" : "")
              .With("FileName", arg1)
              .With("FilePath1", arg1)
              .With("FilePath2", arg2));
}

}  // namespace

int32_t Task_file_sys(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data)) return 1;
  static_cast<void>(TaskArgs(name, args, 1, fields));  // no operation at all is an unknown one
  fields.resize(3);
  const Operation* operation = FindOperation(fields[0]);
  if (operation != nullptr)
    RunOperation(name, *operation, fields[1], fields[2]);
  else
    LogLine(Message("    Task_file_sys: unrecognized file system operation \"<Op>\".", kTemplateLiteral)
                .With("Op", fields[0]));
  return 1;
}

int32_t Task_dir_del(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const Str& folder = fields[0];
  if (!IsDeletableTree(folder)) {
    LogScriptError(Message("Task_dir_del: the folder \"<FileName>\" must not be deleted.", kTemplateLiteral)
                       .With("FileName", folder));
    return 1;
  }
  if (FS::IsDir(folder) && !DeleteTree(folder))
    LogLine(Message("    Attempt to recursively delete the existing directory, <FileName>, failed.",
                    kTemplateLiteral)
                .With("FileName", folder));
  return 1;
}

int32_t Task_file_inst(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  fields.resize(2);  // without a destination the file goes where Windows keeps shared files
  LogLine(Message("    Installing <Source> to <Dest>.", kTemplateLiteral)
              .With("Source", fields[0])
              .With("Dest", fields[1]));
  VersionCopy(fields[0], fields[1].Chars(), true);  // what went wrong is in the log; the script goes on
  return 1;
}
