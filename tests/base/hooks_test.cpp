#include "base/hooks.h"

#include <gtest/gtest.h>

#include "base/assert.h"
#include "base/fatal.h"
#include "base/str.h"

namespace {

int gCalls = 0;

void CountAssert(const char*, const char*, int) { ++gCalls; }
void CountText(const char*) { ++gCalls; }
bool FindText(unsigned id, Str* text) {
  text->Format("text %u", id);
  return true;
}
bool FindVariable(const char* name, Str* value) {
  *value = name;
  return true;
}
void CountIo(bool) { ++gCalls; }
void CountExhausted(uint32_t) { ++gCalls; }
void CountFatal() { ++gCalls; }

class HooksTest : public testing::Test {
 protected:
  HooksTest() : mFormer(SetHooks(HookTable{})) { gCalls = 0; }
  ~HooksTest() override { SetHooks(mFormer); }

  HookTable mFormer;
};

TEST_F(HooksTest, NullEntriesBecomeHarmlessDefaults) {
  const HookTable& hooks = Hooks();
  EXPECT_EQ(hooks.assertFailed, StandardAssertHandler);
  hooks.logBlock("text");
  hooks.logLine("text");
  hooks.fileIoFailed(true);
  hooks.memoryExhausted(MemError::kAlloc);
  hooks.fatalError();
  Str text("kept");
  EXPECT_FALSE(hooks.resourceText(2048, &text));
  EXPECT_FALSE(hooks.variable("Version", &text));
  EXPECT_STREQ(text, "kept");
}

TEST_F(HooksTest, SetHooksReplacesEachAndReturnsTheFormerOnes) {
  const HookTable all = {CountAssert,  CountText, CountText,      FindText,
                         FindVariable, CountIo,   CountExhausted, CountFatal};
  SetHooks(all);
  Hooks().assertFailed("", "", 0);
  Hooks().logBlock("");
  Hooks().logLine("");
  Hooks().fileIoFailed(false);
  Hooks().memoryExhausted(MemError::kAlloc);
  Hooks().fatalError();
  EXPECT_EQ(gCalls, 6);
  Str text;
  EXPECT_TRUE(Hooks().resourceText(7, &text));
  EXPECT_STREQ(text, "text 7");
  EXPECT_TRUE(Hooks().variable("Name", &text));
  EXPECT_STREQ(text, "Name");

  const HookTable former = SetHooks(HookTable{});
  EXPECT_EQ(former.assertFailed, CountAssert);
  EXPECT_EQ(former.resourceText, FindText);
  EXPECT_EQ(Hooks().assertFailed, StandardAssertHandler);
}

TEST_F(HooksTest, OneEntryAlone) {
  HookTable one = {};
  one.logLine = CountText;
  SetHooks(one);
  Hooks().logBlock("not counted");
  Hooks().logLine("counted");
  EXPECT_EQ(gCalls, 1);
}

}  // namespace
