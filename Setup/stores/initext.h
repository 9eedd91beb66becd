#pragma once
// The text of a whole INI store with its cursor: the current section and, in it, the current line. Pure.
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "stores/inisection.h"

// First line of a file store.
constexpr std::string_view kIniFileHeader = "; Veltrane INI v1: Equation Preferences";

class IniText {
 public:
  explicit IniText(const IniRules& rules) : mRules(rules) {}

  // Loading. A line that begins with "[" starts a section; empty lines are dropped.
  void AddLine(std::string_view line, bool continues = false);
  void EndLines();
  void LoadFile(std::string_view bytes);
  // False when a line is too long.
  [[nodiscard]] bool LoadMemory(std::string_view bytes);

  // Writing. Every line ends in CR LF.
  std::string ToFile() const;
  std::string ToMemory() const;

  const IniRules& Rules() const { return mRules; }
  int32_t SectionCount() const { return static_cast<int32_t>(mSections.size()); }
  const IniSection& Section(int32_t i) const { return mSections[static_cast<size_t>(i)]; }
  // -1 when there is none.
  int32_t Current() const { return mCurrent; }
  bool HasCurrent() const { return mCurrent >= 0; }
  std::string_view CurrentText() const { return Section(mCurrent).Text(); }

  // Makes the first section of that name current; without one, none is.
  bool FindSection(std::string_view name);
  // Appends a section and makes it current.
  void CreateSection(std::string_view name);
  // Makes the next section with a header current whose name begins with `prefix`.
  bool NextSection(bool first, std::string_view prefix, std::string_view& name);
  void DeleteSection(std::string_view name);

  // What follows works on the current section; without one it does nothing and gives false.
  void RenameSection(std::string_view newName);
  void SetSectionText(std::string text);
  // The next key line, from the header or the current line on. Values are cut at kIniMaxLine.
  bool NextKey(bool first, std::string_view prefix, std::string& key, std::string& value);
  // The next line that says anything; one without "=" is a key as a whole.
  bool NextLine(bool first, std::string& key, std::string& value);
  // Steps from the header over `count` lines that NextLine would give; false when there are fewer.
  bool SeekLine(int32_t count);
  bool ReadKey(std::string_view key, std::string& value);
  bool DeleteKey(std::string_view key);
  bool WriteKey(std::string_view key, std::string_view value);
  // Adds a key line whether the key exists or not.
  bool AddKey(std::string_view key, std::string_view value);

 private:
  struct NameRef {
    std::string name;  // folded
    int32_t section;
    bool operator<(const NameRef& other) const {
      const int order = name.compare(other.name);
      return order != 0 ? order < 0 : section < other.section;
    }
  };

  int32_t LookUp(std::string_view name);
  void BuildNames();
  void SetCurrent(int32_t section);
  IniSection& Here() { return mSections[static_cast<size_t>(mCurrent)]; }
  bool FindKey(std::string_view key);
  void ReadLine(int32_t line, std::string& key, std::string& value);

  IniRules mRules;
  std::deque<IniSection> mSections;
  bool mOpenBlock = false;      // loading: the last section still takes lines
  bool mInLine = false;         // loading: a piece of the line that is being read was added
  std::vector<NameRef> mNames;  // sorted; valid when mNamesValid
  bool mNamesValid = false;
  int32_t mCurrent = -1;
  int32_t mLine = 0;      // current line
  int32_t mNextLine = 0;  // where an enumeration goes on
};
