#include "messages/vartable.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "messages/rewrite.h"

// A text under expansion: only its middle can still hold placeholders. What lies more than a placeholder's
// length before the first or behind the last one can never become part of one and is set aside, so that a
// text that grows does not cost more and more.
class VarTable::Expansion {
 public:
  Expansion(const VarTable& table, std::string text, char open, char close)
      : mTable(table), mOpen(open), mClose(close), mMiddle(std::move(text)) {}

  ExpandResult Run() {
    ExpandResult result;
    Found found;
    do {
      // One pass: each variable in turn, from the newest on. Going from one that stands in the text to the
      // next such one visits the same variables in the same order as trying all.
      uint32_t below = mTable.mNextSerial;
      for (;;) {
        found = mTable.Search(mMiddle, below, mOpen, mClose);
        SetAside(found);
        if (found.newest == nullptr) break;
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
    for (auto piece = mBack.rbegin(); piece != mBack.rend(); ++piece) mFront += *piece;
    return std::move(mFront);
  }

 private:
  void SetAside(const Found& found) {
    const size_t margin = mTable.mLongestName + 1;
    if (found.end == 0 || found.newest == nullptr) return;
    if (mMiddle.size() - found.end > margin) {
      mBack.push_back(mMiddle.substr(found.end + margin));
      mBackSize += mBack.back().size();
      mMiddle.resize(found.end + margin);
    }
    if (found.first > margin) {
      mFront.append(mMiddle, 0, found.first - margin);
      mMiddle.erase(0, found.first - margin);
    }
  }

  // Replaces every placeholder of one variable, left to right. False when a limit was met.
  bool ReplaceAll(const Variable& variable, int32_t& count) {
    const std::string pattern = mOpen + variable.name + mClose;
    TextRewriter rewriter(std::move(mMiddle));
    bool ended = true;
    for (;;) {
      const size_t match = rewriter.Rest().find(pattern);
      if (match == std::string_view::npos) break;
      ended = count < kMaxReplacements && mFront.size() + rewriter.Size() + mBackSize <= kMaxExpandedSize;
      if (!ended) break;
      rewriter.Pass(match);
      rewriter.Replace(pattern.size(), variable.value);
      ++count;
    }
    mMiddle = rewriter.Take();
    return ended;
  }

  const VarTable& mTable;
  const char mOpen;
  const char mClose;
  std::string mFront;
  std::string mMiddle;
  std::vector<std::string> mBack;  // the last piece is the one nearest to the middle
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
    variable = &mVariables.emplace_front(std::string(name), std::string(value), true, mNextSerial++);
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
  const bool closeInNames = mNameBytes.test(static_cast<unsigned char>(close));
  Found found;
  size_t nextClose = 0;
  for (size_t start = text.find(open); start != std::string_view::npos; start = text.find(open, start + 1)) {
    if (nextClose <= start) nextClose = text.find(close, start + 1);
    if (nextClose == std::string_view::npos) break;
    // Usually a name ends at the next closing character; only names that hold one themselves can reach
    // further.
    size_t end = nextClose;
    while (end != std::string_view::npos && end - start - 1 <= mLongestName) {
      if (const Variable* variable = Find(text.substr(start + 1, end - start - 1)); variable != nullptr) {
        found.first = std::min(found.first, start);
        found.end = std::max(found.end, end + 1);
        if (variable->serial < below && (found.newest == nullptr || variable->serial > found.newest->serial))
          found.newest = variable;
      }
      if (!closeInNames) break;
      end = text.find(close, end + 1);
    }
  }
  return found;
}

ExpandResult VarTable::Expand(std::string& text, char open, char close) const {
  if (text.find(open) == std::string::npos) return {};
  Expansion expansion(*this, std::move(text), open, close);
  const ExpandResult result = expansion.Run();
  text = expansion.Take();
  return result;
}
