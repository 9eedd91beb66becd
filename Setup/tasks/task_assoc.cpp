// File-association tasks: stub_reg (pass 0); add_openwith_support, remove_openwith_support,
// clean_others_ext_reg and clean_old_winini_ext_reg (pass 1).
#include "shell/assoc.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

int32_t Task_stub_reg(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 3, fields))
    RegisterDocumentClass(fields[0], fields[1], fields[2]);
  return 1;
}

int32_t Task_add_openwith_support(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 2, fields))
    AddToOpenWithList(fields[0], fields[1]);
  return 1;
}

int32_t Task_remove_openwith_support(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 2, fields))
    RemoveFromOpenWithList(fields[0], fields[1]);
  return 1;
}

int32_t Task_clean_others_ext_reg(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 2, fields))
    CleanForeignAssociation(fields[0], fields[1]);
  return 1;
}

int32_t Task_clean_old_winini_ext_reg(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 1, fields)) CleanProfileAssociation(fields[0]);
  return 1;
}
