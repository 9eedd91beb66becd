// Handlers of tasks whose modules are not part of this build. A script that uses one gets an error line in
// the log and goes on.
#include "messages/format.h"
#include "messages/logfile.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"

namespace {

int32_t NotAvailable(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data))
    LogError(
        Message("task <TaskName> is not available in this build", kTemplateLiteral).With("TaskName", name));
  return 1;
}

}  // namespace

#define VT_PENDING(task)                                                \
  int32_t Task_##task(const char* name, const char* args, void* data) { \
    return NotAvailable(name, args, data);                              \
  }
VT_PENDING(remove_atm_font)
VT_PENDING(remove_old_atm_font)
VT_PENDING(atm_fontchange_notify)
VT_PENDING(test_ATM_on)
VT_PENDING(remove_soft_fonts)
#undef VT_PENDING
