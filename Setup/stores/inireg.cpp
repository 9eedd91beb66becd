// INI stores over registry keys: each direct subkey is a section, each of its values a key line.
#include <string>
#include <string_view>
#include <vector>

#include "base/assert.h"
#include "stores/inistore.h"
#include "stores/register.h"
#include "stores/regname.h"

namespace {

constexpr DWORD kNameSize = kIniLineSize;  // bytes of a subkey's or value's name, terminator included

// Reads the lines of a registry store one after the other.
class KeyLines {
 public:
  enum Result { kLine, kEnd, kError };
  explicit KeyLines(HKEY key) : mKey(key) {}

  // Goes to one subkey, whose values ReadValue gives.
  bool OpenSubKey(const char* name) {
    mInSubKey = mSubKey.Open(mKey, name, KEY_READ) == ERROR_SUCCESS;
    mNextValue = 0;
    return mInSubKey;
  }

  Result ReadLine(std::string& line) {
    if (mInSubKey) {
      const Result result = ReadValue(line);
      if (result != kEnd) return result;
      mSubKey.Close();
      mInSubKey = false;
    }
    return ReadSubKey(line);
  }

  // Data that is longer than a line is cut; a name that is longer is no key of a store.
  Result ReadValue(std::string& line) {
    char name[kNameSize];
    for (;;) {
      DWORD nameSize = sizeof(name);
      DWORD dataSize = static_cast<DWORD>(mData.size());
      const LSTATUS status = RegEnumValueA(mSubKey.Get(), mNextValue, name, &nameSize, nullptr, nullptr,
                                           reinterpret_cast<BYTE*>(mData.data()), &dataSize);
      if (status == ERROR_NO_MORE_ITEMS) return kEnd;
      if (status == ERROR_MORE_DATA && dataSize > mData.size()) {
        mData.resize(dataSize);
        continue;
      }
      if (status != ERROR_SUCCESS) return kError;
      ++mNextValue;
      line = std::string(name) + '=' + std::string(ValueDataText({mData.data(), dataSize}));
      return kLine;
    }
  }

 private:
  Result ReadSubKey(std::string& line) {
    char name[kNameSize];
    DWORD size = sizeof(name);
    const LSTATUS status =
        RegEnumKeyExA(mKey, mNextSubKey++, name, &size, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) return kEnd;
    if (status != ERROR_SUCCESS || !OpenSubKey(name)) return kError;
    line = '[' + std::string(ValueDataText(DecodeSubKeyName(name))) + ']';
    return kLine;
  }

  HKEY mKey;
  RegKey mSubKey;
  bool mInSubKey = false;
  DWORD mNextSubKey = 0;
  DWORD mNextValue = 0;
  std::vector<char> mData = std::vector<char>(kIniLineSize);
};

// Adds a line as the pieces that fit into one.
void AddPieces(IniText& text, const std::string& line) {
  IniFilePieces pieces(line);
  IniPiece piece;
  while (pieces.Next(piece)) text.AddLine(piece.text, piece.continues);
}

// Whether the subkey of an unchanged section still holds what was read from it.
bool IsAsRead(HKEY key, const std::string& name, const IniSection& section) {
  KeyLines lines(key);
  if (!lines.OpenSubKey(name.c_str())) return false;
  IniText now(AsciiIniRules());
  AddPieces(now, '[' + name + ']');
  std::string line;
  KeyLines::Result result;
  while ((result = lines.ReadValue(line)) == KeyLines::kLine) AddPieces(now, line);
  now.EndLines();
  return result == KeyLines::kEnd && now.SectionCount() == 1 && now.Section(0).Text() == section.Text();
}

// Writes sections back into the key of a store line by line: a header makes its subkey the current one, which
// takes the values up to the next header. A block without a header belongs to the subkey before it: a value
// whose name begins with "[" began it when the subkey was read.
class KeyWriter {
 public:
  explicit KeyWriter(IniStore& ini) : mIni(ini) {}

  bool Write(const IniSection& section) {
    std::string_view name;
    mAsRead = !section.changed && section.Name(mIni.text.Rules(), name) &&
              IsAsRead(mIni.key.Get(), std::string(name), section);
    bool written = true;
    std::string joined;
    std::string_view key;
    std::string_view value;
    for (int32_t i = 0; i < section.LineCount(); ++i) {
      if (section.Continues(i)) continue;
      const std::string_view line = section.WholeLine(i, joined);
      if ((i == 0 || line.starts_with('[')) && ParseIniHeader(section.Line(i), mIni.text.Rules(), name))
        written = WriteHeader(std::string(name)) && written;
      else if (ParseIniKeyLine(line, key, value))
        written = WriteValue(std::string(key), std::string(value), section.changed) && written;
    }
    return written;
  }

  // A section that is gone has no subkey for what follows it.
  void Skip() {
    mHasName = false;
    mSubKey.Close();
  }

 private:
  bool WriteHeader(const std::string& name) {
    mIni.CheckName(name.c_str(), "KeyIsValid(szCurrentKeyName)");
    Skip();
    mName = name;
    mHasName = true;
    return mAsRead || OpenSubKey();
  }

  bool WriteValue(const std::string& name, const std::string& data, bool changed) {
    if (!mHasName) return true;  // a line without a section
    mIni.CheckName(name.c_str(), "KeyIsValid(szValueName)");
    if (mAsRead) return true;
    if (!OpenSubKey()) return false;
    if (!changed && IsForeign(mSubKey.Get(), name)) return true;
    return RegSetValueExA(mSubKey.Get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                          static_cast<DWORD>(data.size()) + 1) == ERROR_SUCCESS;
  }

  bool OpenSubKey() {
    return mSubKey.Get() != nullptr ||
           mSubKey.Create(mIni.key.Get(), mName.c_str(), KEY_READ | KEY_WRITE) == ERROR_SUCCESS;
  }

  // A value that is no plain text: another program's number or list, which was read as a text only for want
  // of a better form.
  static bool IsForeign(HKEY key, const std::string& name) {
    DWORD type = REG_SZ;
    return RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS &&
           type != REG_SZ;
  }

  IniStore& mIni;
  RegKey mSubKey;  // the current one, once something was written to it
  std::string mName;
  bool mHasName = false;
  bool mAsRead = false;  // nothing of this section has to be written
};

}  // namespace

bool OpenIniKey(IniStore& ini, HKEY root, const char* subKey) {
  const LSTATUS status = ini.readOnly ? ini.key.Open(root, subKey, KEY_READ)
                                      : ini.key.Create(root, subKey, KEY_READ | KEY_WRITE);
  if (status != ERROR_SUCCESS) return false;
  KeyLines lines(ini.key.Get());
  std::string line;
  KeyLines::Result result;
  while ((result = lines.ReadLine(line)) == KeyLines::kLine) AddPieces(ini.text, line);
  ini.text.EndLines();
  return result == KeyLines::kEnd;
}

bool WriteIniKey(IniStore& ini) {
  if (!VT_ASSERT(ini.type == iniREG, "ini->type == iniREG")) return false;
  for (int32_t i = 0; i < ini.text.SectionCount(); ++i) {
    const IniSection& section = ini.text.Section(i);
    std::string_view name;
    if ((section.changed || section.deleted) && section.Name(ini.text.Rules(), name))
      RegDeleteKeyTree(ini.key.Get(), std::string(name).c_str());
  }
  KeyWriter writer(ini);
  bool written = true;
  for (int32_t i = 0; i < ini.text.SectionCount(); ++i) {
    const IniSection& section = ini.text.Section(i);
    if (section.deleted)
      writer.Skip();
    else
      written = writer.Write(section) && written;
  }
  return written;
}
