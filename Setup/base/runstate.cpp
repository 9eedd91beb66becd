#include "base/runstate.h"

namespace {

constinit RunState gRun;

}  // namespace

RunState& Run() { return gRun; }
