#include "messages/vartable.h"

#include <algorithm>
#include <utility>
#include <vector>

// A text under expansion: only its middle can hold placeholders. What lies at least a placeholder's length
// before the first or behind the last one is set aside, so that a text that grows does not cost more and
// more; it is fetched back where changes come near to it, because what a value leaves behind can form a
// placeholder with its surroundings.
class VarTable::Expansion {
 public:
  Expansion(const VarTable& table, std::string text, char open, char close, const ExpandLimits& limits)
      : mTable(table),
        mOpen(open),
        mClose(close),
        mLimits(limits),
        mMargin(table.mLongestName + 1),
        mMiddle(std::move(text)) {}

  ExpandResult Run() {
    ExpandResult result;
    Found found;
    do {
      // One pass: each variable in turn, from the newest on. Going from one that stands in the text to the
      // next such one visits the same variables in the same order as trying all.
      uint32_t below = mTable.mNextSerial;
      for (;;) {
        found = mTable.Search(mMiddle, below, mOpen, mClose);
        if (found.newest == nullptr) break;
        TrimBack(mMiddle.size() - found.end);
        TrimFront(found.first);
        if (!ReplaceAll(*found.newest, result.count)) {
          result.stopped = found.newest;
          return result;
        }
        below = found.newest->serial;
      }
    } while (found.end != 0);
    return result;
  }

  std::string Take() {
    mFront += mMiddle;
    while (mBackSize > 0) mFront += FetchBack(mBackSize);
    return std::move(mFront);
  }

 private:
  // A piece set aside from the end; what lies before `at` has been fetched back.
  struct BackPiece {
    std::string text;
    size_t at = 0;
  };

  // Leaves exactly the margin, or all there is, between the start of the middle and the first
  // placeholder. The text before it does not change while placeholders are replaced, so none can begin
  // further to the left afterwards.
  void TrimFront(size_t first) {
    if (first > mMargin) {
      mFront.append(mMiddle, 0, first - mMargin);
      mMiddle.erase(0, first - mMargin);
    } else {
      const size_t fetched = std::min(mMargin - first, mFront.size());
      mMiddle.insert(0, mFront, mFront.size() - fetched);
      mFront.resize(mFront.size() - fetched);
    }
  }

  // Sets aside what lies more than the margin behind the last placeholder, of the
  // `behind` bytes that follow it.
  void TrimBack(size_t behind) {
    if (behind <= mMargin) return;
    BackPiece piece{mMiddle.substr(mMiddle.size() - (behind - mMargin))};
    mMiddle.resize(mMiddle.size() - piece.text.size());
    mBackSize += piece.text.size();
    mBack.push_back(std::move(piece));
  }

  // Up to `count` bytes of what was set aside next to the middle's end.
  std::string FetchBack(size_t count) {
    if (mBack.empty()) return {};
    BackPiece& piece = mBack.back();
    std::string fetched = piece.text.substr(piece.at, count);
    piece.at += fetched.size();
    mBackSize -= fetched.size();
    if (piece.at == piece.text.size()) mBack.pop_back();
    return fetched;
  }

  // Replaces every placeholder of one variable, left to right. False when a limit was met.
  bool ReplaceAll(const Variable& variable, int32_t& count) {
    const std::string pattern = mOpen + variable.name + mClose;
    TextRewriter rewriter(std::move(mMiddle));
    bool ended = true;
    for (;;) {
      const size_t match = rewriter.Rest().find(pattern);
      if (match == std::string_view::npos) break;
      ended = count < mLimits.replacements && mFront.size() + rewriter.Size() + mBackSize <= mLimits.size;
      if (!ended) break;
      rewriter.Pass(match);
      while (mBackSize > 0 && rewriter.Rest().size() < pattern.size() + mMargin)
        rewriter.Append(FetchBack(mMargin + kFetchAhead));
      rewriter.Replace(pattern.size(), variable.value);
      ++count;
    }
    mMiddle = rewriter.Take();
    return ended;
  }

  static constexpr size_t kFetchAhead = 256;

  const VarTable& mTable;
  const char mOpen;
  const char mClose;
  const ExpandLimits mLimits;
  const size_t mMargin;  // a placeholder's length less one
  std::string mFront;
  std::string mMiddle;
  std::vector<BackPiece> mBack;  // the last one is next to the middle
  size_t mBackSize = 0;
};

bool VarTable::Set(std::string_view name, std::string_view value, bool isMutable) {
  if (name.starts_with('%')) {
    name.remove_prefix(1);
    isMutable = false;
  }
  if (name.empty()) return false;
  Variable* variable = nullptr;
  if (const auto found = mByName.find(name); found != mByName.end()) {
    variable = found->second;
    if (variable->isMutable) variable->value = value;
  } else {
    mVariables.push_front({std::string(name), std::string(value), true, mNextSerial++});
    variable = &mVariables.front();
    mByName.emplace(variable->name, variable);
    mLongestName = std::max(mLongestName, name.size());
    for (const char ch : name) mNameBytes.set(static_cast<unsigned char>(ch));
  }
  if (!isMutable) variable->isMutable = false;
  return true;
}

const Variable* VarTable::Find(std::string_view name) const {
  const auto found = mByName.find(name);
  return found != mByName.end() ? found->second : nullptr;
}

void VarTable::Clear() {
  mByName.clear();
  mVariables.clear();
  mNameBytes.reset();
  mLongestName = 0;
}

VarTable::Found VarTable::Search(std::string_view text, uint32_t below, char open, char close) const {
  // Names end at the next closing character, but for those that hold one themselves. Comparing with these few
  // keeps texts and names full of such characters from taking hours.
  std::vector<const Variable*> reaching;
  if (mNameBytes.test(static_cast<unsigned char>(close))) {
    for (const Variable& variable : mVariables)
      if (variable.name.find(close) != std::string::npos) reaching.push_back(&variable);
  }
  Found found;
  const auto note = [&](size_t start, const Variable& variable) {
    found.first = std::min(found.first, start);
    found.end = std::max(found.end, start + variable.name.size() + 2);
    if (variable.serial < below && (found.newest == nullptr || variable.serial > found.newest->serial))
      found.newest = &variable;
  };
  size_t nextClose = 0;
  for (size_t start = text.find(open); start != std::string_view::npos; start = text.find(open, start + 1)) {
    if (nextClose <= start) nextClose = text.find(close, start + 1);
    if (nextClose == std::string_view::npos) break;
    const size_t length = nextClose - start - 1;
    if (length <= mLongestName) {
      if (const Variable* variable = Find(text.substr(start + 1, length))) note(start, *variable);
    }
    for (const Variable* variable : reaching) {
      const std::string& name = variable->name;
      const size_t end = start + 1 + name.size();
      if (end < text.size() && text[end] == close && text.substr(start + 1).starts_with(name))
        note(start, *variable);
    }
  }
  return found;
}

ExpandResult VarTable::Expand(std::string& text, char open, char close, const ExpandLimits& limits) const {
  if (text.find(open) == std::string::npos) return {};
  Expansion expansion(*this, std::move(text), open, close, limits);
  const ExpandResult result = expansion.Run();
  text = expansion.Take();
  return result;
}
