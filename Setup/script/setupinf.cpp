#include "script/setupinf.h"

#include <algorithm>
#include <limits>

#include "base/assert.h"
#include "messages/format.h"
#include "messages/logfile.h"
#include "script/filerecord.h"

namespace {

constexpr int32_t kMaxText = 511;  // characters of a key or value
constexpr int32_t kMaxDepth = 50;  // a section that runs itself must end
constexpr char kFilesSection[] = "files";

Str CutText(const char* text) {
  Str result(text);
  if (result.Length() > kMaxText) result.Delete(kMaxText, -1);
  return result;
}

InfResult HandlerResult(int32_t returned) { return returned != 0 ? kInfOK : kInfHandlerFailed; }

struct FileRecordTexts {
  Str disk;
  Str source;
  Str dest;
  Str size;
};

void ExpandField(const VarList& variables, std::string_view field, Str& out) {
  out = field;
  variables.Expand(out);
}

int32_t ParseDisk(std::string_view text) {
  constexpr int64_t kLargest = std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(std::min(ParseRecordNumber(text), kLargest));
}

// Splits the expanded record, or, when a variable's value brought commas of its own, the raw one.
bool ReadRecord(const VarList& variables, const Str& raw, FileRecordTexts& texts) {
  Str expanded(raw);
  variables.Expand(expanded);
  RecordFields fields;
  if (SplitBeforeExpanding(raw.View(), expanded.View())) {
    if (!SplitRecord(raw.View(), fields)) return false;
    ExpandField(variables, fields.disk, texts.disk);
    ExpandField(variables, fields.source, texts.source);
    ExpandField(variables, fields.dest, texts.dest);
    ExpandField(variables, fields.size, texts.size);
    return true;
  }
  if (!SplitRecord(expanded.View(), fields)) return false;
  texts.disk = fields.disk;
  texts.source = fields.source;
  texts.dest = fields.dest;
  texts.size = fields.size;
  return true;
}

}  // namespace

SetupScript& Script() {
  static SetupScript script(AppVars(), LogLine);
  return script;
}

void LogScriptError(const char* text) {
  Str line(text);
  const Str place = Script().Place();
  if (!place.IsEmpty()) {
    line.Append(" In Setup.inf: ");
    line.Append(place);
    line.Append('.');
  }
  LogError(line);
}

void SetupScript::Log(const char* text) const {
  if (mLog != nullptr) mLog(text);
}

Str SetupScript::Place() const {
  if (mSection.IsEmpty()) return Str();
  Message place("section \"<sect>\", line \"<key>\"", kTemplateLiteral);
  return place.With("sect", mSection).With("key", mKey).Text();
}

InfResult SetupScript::Open(const char* path, bool readOnly) {
  if (!VT_ASSERT(!mIsOpen, "! mIsOpen")) return kInfFail;
  if (!VT_ASSERT(path != nullptr, "path")) return kInfFail;
  mStore = IniOpen(path, readOnly);
  if (!mStore) return kInfFail;
  mReadOnly = readOnly;
  mIsOpen = true;
  return kInfOK;
}

void SetupScript::Close() {
  if (!mIsOpen) return;
  if (!IniClose(mStore)) Log("Setup.inf could not be written back.");
  mIsOpen = false;
}

InfResult SetupScript::SectionExists(const char* section) {
  if (!VT_ASSERT(mIsOpen, "mIsOpen") || !VT_ASSERT(section != nullptr, "section")) return kInfNoSection;
  return IniFindSection(mStore.get(), section) ? kInfOK : kInfNoSection;
}

InfResult SetupScript::DoItem(const char* section, const char* key, const InfHandlers& handlers,
                              void* context) {
  if (!VT_ASSERT(mIsOpen, "mIsOpen") || !VT_ASSERT(section != nullptr, "section")) return kInfNoSection;
  if (!VT_ASSERT(key != nullptr, "key")) return kInfNoItem;
  if (!IniFindSection(mStore.get(), section)) return kInfNoSection;
  char value[kMaxText + 1];
  if (!IniReadString(mStore.get(), key, value, sizeof(value))) return kInfNoItem;
  const Str outerSection = mSection;
  const Str outerKey = mKey;
  mSection = section;
  mKey = key;
  const InfResult result = ProcessLine(key, value, handlers, context);
  mSection = outerSection;
  mKey = outerKey;
  return result;
}

InfResult SetupScript::NoSection(const char* section) {
  Log(Message("DoSection fail: section \"<sect>\" not found.", kTemplateLiteral).With("sect", section));
  return kInfNoSection;
}

InfResult SetupScript::DoSection(const char* section, const InfHandlers& handlers, void* context) {
  if (!VT_ASSERT(mIsOpen, "mIsOpen") || !VT_ASSERT(section != nullptr, "section")) return kInfNoSection;
  if (mDepth >= kMaxDepth) {
    Log(Message("DoSection fail: section \"<sect>\" is nested too deeply.", kTemplateLiteral)
            .With("sect", section));
    return kInfHandlerFailed;
  }
  const Str outerSection = mSection;
  const Str outerKey = mKey;
  ++mDepth;
  const InfResult result = WalkSection(section, handlers, context);
  --mDepth;
  mSection = outerSection;
  mKey = outerKey;
  return result;
}

// A handler may move the store to another section, so the walk positions on its own section
// and line anew each time.
InfResult SetupScript::WalkSection(const char* section, const InfHandlers& handlers, void* context) {
  for (int32_t done = 0;; ++done) {
    if (!IniFindSection(mStore.get(), section)) return NoSection(section);
    if (!IniSeekLine(mStore.get(), done)) return kInfFail;
    Str key;
    Str value;
    if (!IniNextLine(mStore.get(), false, key, value)) return kInfOK;
    mSection = section;
    mKey = key;
    const InfResult result = ProcessLine(key, value, handlers, context);
    if (result != kInfOK) {
      Log(Message("The section \"<sect>\" stopped at the line \"<key>\".", kTemplateLiteral)
              .With("sect", section)
              .With("key", key));
      return result;
    }
  }
}

InfResult SetupScript::ProcessLine(const char* key, const char* value, const InfHandlers& handlers,
                                   void* context) {
  if (!VT_ASSERT(mIsOpen, "mIsOpen")) return kInfFail;
  if (!VT_ASSERT(key != nullptr, "key") || !VT_ASSERT(value != nullptr, "value")) return kInfHandlerFailed;
  Str name = CutText(key);
  Str text = CutText(value);
  mVariables.Expand(name);
  mVariables.Expand(text);
  switch (name.IsEmpty() ? '\0' : name.Chars()[0]) {
    case '$':
      return handlers.taskProc == nullptr ? kInfOK : HandlerResult(handlers.taskProc(name, text, context));
    case '&':
      name.Delete(0, 1);
      return DoNested(name, handlers, context);
    case '+':
    case '-':
      return handlers.registryProc == nullptr ? kInfOK
                                              : HandlerResult(handlers.registryProc(name, text, context));
    default:
      break;
  }
  if (text.IsEmpty()) return handlers.fileProc == nullptr ? kInfOK : DoFileLine(name, handlers, context);
  return handlers.variableProc == nullptr ? kInfOK
                                          : HandlerResult(handlers.variableProc(name, text, context));
}

InfResult SetupScript::DoNested(Str name, const InfHandlers& handlers, void* context) {
  const int32_t last = name.Length() - 1;
  if (last >= 0 && name.Chars()[last] == '?') {
    name.Delete(last, 1);
    Str variable("do_");
    variable.Append(name);
    Str value;
    if (!mVariables.GetExpanded(variable, value, VarList::kExpandThis)) return kInfOK;
    VT_ASSERT(value == "0" || value == "1", "value == \"0\" || value == \"1\"");
    if (value != "1") return kInfOK;
  }
  return DoSection(name, handlers, context);
}

InfResult SetupScript::DoFileLine(const char* key, const InfHandlers& handlers, void* context) {
  if (!IniFindSection(mStore.get(), kFilesSection)) {
    Log("DoFileLine fail: no section \"files\".");
    return kInfNoSection;
  }
  char value[kMaxText + 1];
  if (!IniReadString(mStore.get(), key, value, sizeof(value))) {
    Log(Message("DoFileLine fail: no record \"<key>\" in the section \"files\".", kTemplateLiteral)
            .With("key", key));
    return kInfNoItem;
  }
  const Str raw(value);
  FileRecordTexts texts;
  if (!ReadRecord(mVariables, raw, texts)) {
    Log(Message("DoFileLine fail: the record \"<key>=<record>\" has less than four fields.", kTemplateLiteral)
            .With("key", key)
            .With("record", raw));
    return kInfHandlerFailed;
  }
  if (!IsRecordNumber(texts.size.View()))
    Log(Message(
            "DoFileLine: the size \"<record>\" of the file \"<key>\" is no number. In Setup.inf: <Place>.",
            kTemplateLiteral)
            .With("key", key)
            .With("Place", Place())
            .With("record", texts.size));
  int64_t size = ParseRecordNumber(texts.size.View());
  const int64_t oldSize = size;
  const int32_t disk = ParseDisk(texts.disk.View());
  const int32_t returned = handlers.fileProc(key, disk, texts.source, texts.dest, size, context);
  if (size != oldSize && !mReadOnly) {
    // The handler may have moved the store.
    if (!IniFindSection(mStore.get(), kFilesSection) ||
        !IniWriteString(mStore.get(), key, WithRecordSize(raw.View(), size).c_str()))
      Log(Message("DoFileLine: the new size of \"<key>\" could not be written.", kTemplateLiteral)
              .With("key", key));
  }
  return HandlerResult(returned);
}
