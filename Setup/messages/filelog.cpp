#include "messages/filelog.h"

#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fs.h"

namespace {

Str DeletingLine(const char* path, const char* result) {
  return Message("Deleting <PathName>, result = <Result>", kTemplateLiteral)
      .With("PathName", path)
      .With("Result", result)
      .Text();
}

}  // namespace

bool LoggedCopy(const char* source, const char* dest) {
  LogLine(Message("Copying <Source> to <Dest>", kTemplateLiteral).With("Source", source).With("Dest", dest));
  return FS::Copy(source, dest, false);
}

bool LoggedDelete(const char* path) {
  const bool deleted = FS::Delete(path);
  if (deleted)
    LogLine(DeletingLine(path, "success"));
  else
    LogError(DeletingLine(path, "failure"));
  return deleted;
}

void DeleteIfThere(const char* path) {
  if (FS::Exists(path) && !FS::Delete(path)) LogError(DeletingLine(path, "failure"));
}
