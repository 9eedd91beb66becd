// Shortcut tasks: add_icon, add_icon_group, empty_icon_group, remove_icon_group and
// create_link. All act in pass 1.
#include "shell/shortcut.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

// name, description, target, arguments, icon file, icon number
LinkRecord LinkFromFields(const std::vector<Str>& fields) {
  LinkRecord link;
  link.name = ExpandedArgAt(fields, 0);
  link.desc = ExpandedArgAt(fields, 1);
  link.pathname = ExpandedArgAt(fields, 2);
  link.args = ExpandedArgAt(fields, 3);
  link.iconPath = ExpandedArgAt(fields, 4);
  link.iconIndex = ArgNumber(ExpandedArgAt(fields, 5));
  return link;
}

// Empty when the script names no group, which the group functions refuse and log.
Str GroupName(const char* name, const char* args) { return ExpandedArgAt(TaskArgs(name, args), 0); }

}  // namespace

int32_t Task_add_icon(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 1, fields)) AddGroupLink(LinkFromFields(fields));
  return 1;
}

int32_t Task_add_icon_group(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data)) CreateProgramGroup(GroupName(name, args));
  return 1;
}

int32_t Task_empty_icon_group(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data)) EmptyProgramGroup(GroupName(name, args));
  return 1;
}

int32_t Task_remove_icon_group(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data)) RemoveProgramGroup(GroupName(name, args));
  return 1;
}

int32_t Task_create_link(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (TaskActsNow(name, args, data) && TaskArgs(name, args, 1, fields))
    CreateSingleLink(LinkFromFields(fields));
  return 1;
}
