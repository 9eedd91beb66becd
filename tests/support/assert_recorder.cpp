#include "support/assert_recorder.h"

namespace {
AssertRecorder* gCurrent = nullptr;
}

AssertRecorder::AssertRecorder() : mFormer(gCurrent) {
  HookTable hooks = Hooks();
  hooks.assertFailed = OnAssert;
  hooks.logBlock = OnLogBlock;
  hooks.logLine = OnLogLine;
  mFormerHooks = SetHooks(hooks);
  gCurrent = this;
}

AssertRecorder::~AssertRecorder() {
  gCurrent = mFormer;
  SetHooks(mFormerHooks);
}

std::vector<std::string> AssertRecorder::Texts() const {
  std::vector<std::string> texts;
  for (const RecordedAssert& recorded : mAsserts) texts.push_back(recorded.text);
  return texts;
}

std::string AssertRecorder::Only() const {
  if (mAsserts.empty()) return "";
  if (mAsserts.size() > 1) return "<" + std::to_string(mAsserts.size()) + " assertions>";
  return mAsserts[0].text;
}

void AssertRecorder::Clear() {
  mAsserts.clear();
  mLogBlocks.clear();
  mLogLines.clear();
}

void AssertRecorder::OnAssert(const char* text, const char* file, int line) {
  gCurrent->mAsserts.push_back({text, file, line});
}

void AssertRecorder::OnLogBlock(const char* text) { gCurrent->mLogBlocks.push_back(text); }

void AssertRecorder::OnLogLine(const char* text) { gCurrent->mLogLines.push_back(text); }
