#include "base/hooks.h"

#include "base/assert.h"

namespace {

constexpr HookTable kDefaults = {
    StandardAssertHandler,                    // assertFailed
    [](const char*) {},                       // logBlock
    [](const char*) {},                       // logLine
    [](unsigned, Str*) { return false; },     // resourceText
    [](const char*, Str*) { return false; },  // variable
    [](bool) {},                              // fileIoFailed
    [](uint32_t) {},                          // memoryExhausted
    [] {},                                    // fatalError
};

constinit HookTable gHooks = kDefaults;

template <class Function>
Function OrDefault(Function hook, Function fallback) {
  return hook != nullptr ? hook : fallback;
}

}  // namespace

const HookTable& Hooks() { return gHooks; }

HookTable SetHooks(const HookTable& hooks) {
  const HookTable former = gHooks;
  gHooks = {
      OrDefault(hooks.assertFailed, kDefaults.assertFailed),
      OrDefault(hooks.logBlock, kDefaults.logBlock),
      OrDefault(hooks.logLine, kDefaults.logLine),
      OrDefault(hooks.resourceText, kDefaults.resourceText),
      OrDefault(hooks.variable, kDefaults.variable),
      OrDefault(hooks.fileIoFailed, kDefaults.fileIoFailed),
      OrDefault(hooks.memoryExhausted, kDefaults.memoryExhausted),
      OrDefault(hooks.fatalError, kDefaults.fatalError),
  };
  return former;
}
