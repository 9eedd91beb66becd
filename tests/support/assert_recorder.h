#pragma once
// Records what the program reports upward while an object of this class lives: assertions, log blocks and log
// lines. Without one, a failed assertion fails the running test.
#include <string>
#include <vector>

#include "base/hooks.h"

struct RecordedAssert {
  std::string text;
  std::string file;  // without its folder
  int line;
};

class AssertRecorder {
 public:
  AssertRecorder();
  ~AssertRecorder();
  AssertRecorder(const AssertRecorder&) = delete;
  AssertRecorder& operator=(const AssertRecorder&) = delete;

  const std::vector<RecordedAssert>& Asserts() const { return mAsserts; }
  // The texts alone, in order.
  std::vector<std::string> Texts() const;
  // The only text recorded; "" when there was none and "<n assertions>" when there were more.
  std::string Only() const;
  const std::vector<std::string>& LogBlocks() const { return mLogBlocks; }
  const std::vector<std::string>& LogLines() const { return mLogLines; }
  void Clear();

 private:
  static void OnAssert(const char* text, const char* file, int line);
  static void OnLogBlock(const char* text);
  static void OnLogLine(const char* text);

  HookTable mFormerHooks;
  AssertRecorder* mFormer;
  std::vector<RecordedAssert> mAsserts;
  std::vector<std::string> mLogBlocks;
  std::vector<std::string> mLogLines;
};
