// Equation-server tasks: register (installation pass 1, removal pass 0), set_all_autoconverts and
// set_one_autoconvert (pass 0), run_ole_mgr and convert_pref (pass 1).
#include "base/runstate.h"
#include "messages/format.h"
#include "oleserver/convpref.h"
#include "oleserver/regdlg.h"
#include "oleserver/regmgr.h"
#include "tasks/infproc.h"
#include "tasks/tasks.h"
#include "ui/dlog.h"
#include "ui/err.h"
#include "ui/progmetr.h"

namespace {

constexpr unsigned kRegistering = 352;
constexpr unsigned kChangingOle = 353;
constexpr unsigned kRegistrationFailed = 354;

bool MeansOn(const std::vector<Str>& fields, size_t i) {
  return fields.size() <= i || fields[i].ICompare("False") != 0;
}

}  // namespace

int32_t Task_register(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  SetProgressText(Message(kRegistering));
  const bool install = Run().install;
  if (!RegisterProduct(install, install)) ShowError(Message(kRegistrationFailed));
  return 1;
}

int32_t Task_set_all_autoconverts(const char* name, const char* args, void* data) {
  if (!TaskActsNow(name, args, data)) return 1;
  const bool on = MeansOn(TaskArgs(name, args), 0);
  for (const auto& server : ListEquationServers(ServerChoice::kTakeOver)) server->SetAutoConvert(on);
  return 1;
}

int32_t Task_set_one_autoconvert(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields)) return 1;
  const ServerList servers = ListEquationServers(ServerChoice::kAll);
  if (const COLEEquationReg* server = FindServerByProgId(servers, fields[0]))
    server->SetAutoConvert(MeansOn(fields, 1));
  return 1;
}

int32_t Task_run_ole_mgr(const char* name, const char* args, void* data) {
  std::vector<Str> fields;
  bool unused = false;  // both words open the manager
  if (!TaskActsNow(name, args, data) || !TaskArgs(name, args, 1, fields) ||
      !ParseTrueFalse(name, fields[0], unused))
    return 1;
  SetProgressText(Message(kChangingOle));
  RunConversionManager(MainWindow());
  return 1;
}

int32_t Task_convert_pref(const char* name, const char* args, void* data) {
  if (TaskActsNow(name, args, data)) ConvertNewestPreferences();
  return 1;
}
