#include "script/versionapi.h"

#include "base/dynlib.h"

namespace {

struct SystemApi {
  SystemApi();
  DynLib version;
  DynLib expander;
  VersionApi api = {};
  bool complete = false;
};

constexpr const char* kVersionNames[] = {"VerFindFileA", "VerInstallFileA"};
constexpr const char* kExpanderNames[] = {"LZOpenFileA", "GetExpandedNameA", "LZClose"};

SystemApi::SystemApi()
    : version("version.dll", kVersionNames, 2, 0), expander("lz32.dll", kExpanderNames, 3, 0) {
  api.verFindFile = version.FuncAs<decltype(api.verFindFile)>(0);
  api.verInstallFile = version.FuncAs<decltype(api.verInstallFile)>(1);
  api.lzOpenFile = expander.FuncAs<decltype(api.lzOpenFile)>(0);
  api.getExpandedName = expander.FuncAs<decltype(api.getExpandedName)>(1);
  api.lzClose = expander.FuncAs<decltype(api.lzClose)>(2);
  complete = api.verFindFile != nullptr && api.verInstallFile != nullptr && api.lzOpenFile != nullptr &&
             api.getExpandedName != nullptr && api.lzClose != nullptr;
}

const VersionApi* gReplacement = nullptr;

}  // namespace

const VersionApi* GetVersionApi() {
  if (gReplacement != nullptr) return gReplacement;
  static const SystemApi system;
  return system.complete ? &system.api : nullptr;
}

void SetVersionApi(const VersionApi* api) { gReplacement = api; }
