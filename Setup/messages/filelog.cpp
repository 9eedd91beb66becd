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
  Message line("Deleting <PathName>, result = <Result>", kTemplateLiteral);
  line.With("PathName", path).With("Result", deleted ? "success" : "failure");
  if (deleted)
    LogLine(line);
  else
    LogError(line);
  return deleted;
}
