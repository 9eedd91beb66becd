#include "messages/filelog.h"

#include "messages/format.h"
#include "messages/logfile.h"
#include "platform/fs.h"

bool LoggedCopy(const char* source, const char* dest) {
  LogLine(Message("Copying <Source> to <Dest>", kTemplateLiteral).With("Source", source).With("Dest", dest));
  return FS::Copy(source, dest, false);
}

bool LoggedDelete(const char* path) {
  const bool deleted = FS::Delete(path);
  LogDeletion(path, deleted);
  return deleted;
}

void DeleteIfThere(const char* path) {
  if (FS::Exists(path) && !FS::Delete(path)) LogDeletion(path, false);
}

void LogDeletion(const char* path, bool deleted) {
  LogOutcome(deleted, Message("Deleting <PathName>, result = <Result>", kTemplateLiteral)
                          .With("PathName", path)
                          .With("Result", deleted ? "success" : "failure"));
}
