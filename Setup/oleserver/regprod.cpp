// Registration of the product's own server, done by the product itself.
#include <windows.h>
#include <shellapi.h>

#include "messages/format.h"
#include "messages/logfile.h"
#include "oleserver/regmgr.h"
#include "ui/dlog.h"

namespace {

constexpr int32_t kShellSuccess = 32;  // ShellExecute results above this are successes
constexpr DWORD kSettleTime = 4000;    // milliseconds the product needs to take its registration back
constexpr int32_t kFileNotFound = SE_ERR_FNF;
constexpr int32_t kPathNotFound = SE_ERR_PNF;

// Starts the program without ever showing an error box of the shell; its result number.
int32_t StartProduct(const Str& program, const Str& args) {
  SHELLEXECUTEINFOA info = {};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_FLAG_NO_UI;
  info.lpVerb = "open";
  info.lpFile = program;
  info.lpParameters = args;
  info.nShow = SW_SHOWNOACTIVATE;
  if (ShellExecuteExA(&info)) return static_cast<int32_t>(reinterpret_cast<INT_PTR>(info.hInstApp));
  const DWORD error = GetLastError();
  if (error == ERROR_FILE_NOT_FOUND) return kFileNotFound;
  if (error == ERROR_PATH_NOT_FOUND) return kPathNotFound;
  const int32_t result = static_cast<int32_t>(reinterpret_cast<INT_PTR>(info.hInstApp));
  return result > kShellSuccess ? 0 : result;
}

}  // namespace

bool RegisterProduct(bool install, bool required) {
  const Str program = MakeTemplate("<ProgDir>\\<AppProgName>.exe", kTemplateExpand);
  const Str args =
      Message("-<RegType>", kTemplateLiteral).With("RegType", install ? "install" : "remove").Text();
  const int32_t result = StartProduct(program, args);
  const bool missing = result == kFileNotFound || result == kPathNotFound;
  const bool success = result > kShellSuccess || (missing && !required);
  Str command(program);
  command.Append(' ');
  command.Append(args);
  LogLine(Message("OLE Registration command: <ExecCmd> = <Stat> <ErrCode>", kTemplateLiteral)
              .With("ExecCmd", command)
              .With("Stat", success ? "Success" : "Fail: Error = ")
              .With("ErrCode", result));
  // A program that is gone needs no time.
  if (!install && result > kShellSuccess) PumpFor(kSettleTime);
  return success;
}
