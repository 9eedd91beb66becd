// Shortcut tasks: add_icon, add_icon_group, empty_icon_group, remove_icon_group and create_link. All act in
// pass 1.
#include <cstdlib>

#include "messages/format.h"
#include "shell/shortcut.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

// name, description, target, arguments, icon file, icon number
LinkRecord LinkFromFields(const std::vector<Str>& fields) {
  const auto field = [&](size_t i) {
    return i < fields.size() ? MakeTemplate(fields[i].Chars(), kTemplateExpand) : Str();
  };
  LinkRecord link;
  link.name = field(0);
  link.desc = field(1);
  link.pathname = field(2);
  link.args = field(3);
  link.iconPath = field(4);
  link.iconIndex = static_cast<int32_t>(std::strtol(field(5), nullptr, 10));
  return link;
}

// Empty when the script names no group, which the group functions refuse and log.
Str GroupName(const char* name, const char* args) {
  const std::vector<Str> fields = TaskArgs(name, args);
  return fields.empty() ? Str() : MakeTemplate(fields[0].Chars(), kTemplateExpand);
}

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
