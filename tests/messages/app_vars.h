#pragma once
// Tests that set application variables or open the log: both are as new before and after each.
#include <gtest/gtest.h>

#include <string>

#include "messages/logfile.h"
#include "messages/varlist.h"

class AppVarsTest : public testing::Test {
 protected:
  void SetUp() override { Reset(); }
  void TearDown() override { Reset(); }

  static void Reset() {
    AppVars().Clear();  // without a name for it the log stays where it is when it is closed
    CloseAndRenameLog();
  }
};

// Everything in a list, newest first, frozen names with "%": "%B=2 A=1".
inline std::string Listing(const VarList& list) {
  std::string text;
  list.ForEach([&](const char* name, const char* value, bool isMutable) {
    if (!text.empty()) text += ' ';
    if (!isMutable) text += '%';
    text += std::string(name) + '=' + value;
    return true;
  });
  return text;
}
