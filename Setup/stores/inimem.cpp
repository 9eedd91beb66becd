// INI stores over memory blocks and over string lists of the resources.
#include <cstring>
#include <string>
#include <string_view>

#include "base/assert.h"
#include "messages/restext.h"
#include "stores/inistore.h"

bool OpenIniMemory(IniStore& ini) {
  if (!ini.hand->IsValid() || ini.hand->Size() == 0) return true;
  const MemLock lock(*ini.hand);
  return ini.text.LoadMemory({lock.Ptr(), ini.hand->Size()});
}

bool WriteIniMemory(IniStore& ini) {
  VT_ASSERT(ini.type == iniMEM, "ini->type == iniMEM");
  if (!VT_ASSERT(ini.hand != nullptr, "ini->m.ptr")) return false;  // no block, so no text to lock
  const std::string content = ini.text.ToMemory();
  const uint32_t size = static_cast<uint32_t>(content.size()) + 1;
  if (ini.hand->IsValid())
    ini.hand->Resize(size);
  else
    *ini.hand = MemHandle(size);
  const MemLock lock(*ini.hand);
  std::memcpy(lock.Ptr(), content.c_str(), size);
  return true;
}

void LoadIniStringList(IniStore& ini) {
  Str item;
  for (int32_t i = 0; GetRunText(ini.listNumber, i, item); ++i) {
    ini.text.AddLine(UpToLineEnd(item.View()).substr(0, kIniMaxLine));
  }
  ini.text.EndLines();
}
