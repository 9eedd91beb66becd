#pragma once
// Fails every test that leaves more files, registry keys, processes, threads, tokens, mappings or windows
// open than it found.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

// Excuses the running test, for what the system itself opens once and keeps (give the reason).
void AllowOpenHandles(const char* reason);

class LeakCheck : public testing::EmptyTestEventListener {
 public:
  using Handles = std::map<uintptr_t, std::string>;  // type by value

  void OnTestStart(const testing::TestInfo& info) override;
  void OnTestEnd(const testing::TestInfo& info) override;

 private:
  Handles mBefore;
};
