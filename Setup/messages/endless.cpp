#include "messages/endless.h"

#include "messages/logfile.h"

void LogEndless(const char* kind, std::string_view name) {
  // Joined by hand: filling a template could meet the same limit.
  Str line("The ");
  line.Append(kind);
  line.Append(" \"");
  line.Append(name);
  line.Append("\" never comes to an end; its placeholders were left as they are.");
  LogLine(line);
}
