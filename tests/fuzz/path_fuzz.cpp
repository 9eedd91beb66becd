// sources: platform/pathparts.cpp
// Splitting and joining are inverse, joining makes exactly one backslash, an extension that is set is
// read back, and shortening keeps its limit and gives what the plain procedure gives. With and
// without double-byte characters.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pathparts.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsShiftJisLead(unsigned char byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// True for a text that ends in the first half of a character: whatever is appended becomes its second half.
bool IsCut(std::string_view text, LeadByteTest lead) {
  size_t pos = 0;
  while (pos < text.size()) pos += lead && lead(static_cast<unsigned char>(text[pos])) ? 2 : 1;
  return pos > text.size();
}

void CheckSplit(std::string_view path, LeadByteTest lead) {
  const PathText::Parts parts = PathText::Split(path, lead);
  std::string whole(parts.volume);
  whole.append(parts.dir).append(parts.name).append(parts.ext);
  Require(whole == path);
  Require(parts.dir.empty() || parts.dir.back() == '\\');
  Require(PathText::FindBackslash(parts.name, 0, lead) == PathText::kNone);
  Require(parts.ext.empty() || (parts.ext.front() == '.' && parts.ext.rfind('.') == 0));
  // A volume that ends in a backslash comes from a network path with an empty server or share only.
  if (!PathText::EndsInBackslash(parts.volume, lead)) {
    Require(PathText::Build(parts.volume, parts.dir, parts.name, parts.ext, lead) == path);
  }
}

void CheckPick(std::string_view path, LeadByteTest lead) {
  using namespace PathText;
  const Parts parts = Split(path, lead);
  const std::string name = Pick(path, kFileName, lead);
  Require(name == std::string(parts.name) + std::string(parts.ext));
  Require(IsCut(parts.volume, lead) || EndsInBackslash(Pick(path, kVolume, lead), lead));
  const bool doubled =
      parts.dir.size() >= 2 && EndsInBackslash(parts.dir.substr(0, parts.dir.size() - 1), lead);
  if (!IsFull(path) || name.empty() || doubled || EndsInBackslash(parts.volume, lead)) return;
  std::string joined = Pick(path, kVolume | kDir, lead);
  Append(joined, name, lead);
  Require(joined == path);
}

void CheckAppend(std::string_view path, std::string_view component, LeadByteTest lead) {
  if (component.empty() || IsCut(path, lead)) return;
  std::string joined(path);
  PathText::Append(joined, component, lead);
  const bool starts = component.front() == '\\';
  const std::string_view tail = starts ? component.substr(1) : component;
  std::string_view head = path;
  if (PathText::EndsInBackslash(head, lead)) head.remove_suffix(1);
  Require(joined == std::string(head) + "\\" + std::string(tail));
}

void CheckExtension(std::string_view path, std::string_view text, LeadByteTest lead) {
  std::string changed(path);
  PathText::SetExtension(changed, "", lead);
  Require(changed.size() <= path.size() && path.substr(0, changed.size()) == changed);
  if (IsCut(path, lead) || text.empty() || text.find('.') != std::string_view::npos ||
      text.find('\\') != std::string_view::npos)
    return;
  const std::string ext = "." + std::string(text);
  changed = path;
  PathText::SetExtension(changed, ext, lead);
  const size_t dot = PathText::FindExtension(changed, lead);
  Require(dot != PathText::kNone && changed.substr(dot) == ext);
}

// The display form by lists of folders; one byte is one character.
std::string PlainShorten(const std::string& path, const std::string& name, size_t max) {
  if (path.size() <= max) return path;
  size_t first = path.starts_with("\\\\") ? path.find('\\', 2) : path.find('\\');
  if (first != std::string::npos) {
    const std::string head = path.substr(0, first + 1);
    std::vector<std::string> folders;
    std::string tail = path.substr(first + 1);
    for (size_t slash = tail.find('\\'); slash != std::string::npos; slash = tail.find('\\')) {
      folders.push_back(tail.substr(0, slash));
      tail.erase(0, slash + 1);
    }
    for (bool more = true; more;) {
      if (!folders.empty() && folders.front() == "...") folders.erase(folders.begin());
      more = !folders.empty();
      if (more) folders.front() = "...";
      std::string form = head;
      for (const std::string& folder : folders) form += folder + "\\";
      form += tail;
      if (form.size() <= max) return form;
    }
  }
  return name.size() <= max ? name : name.substr(0, max - 4) + " ...";
}

void CheckShorten(std::string_view path, size_t max, LeadByteTest lead) {
  const std::string name = PathText::Pick(path, PathText::kFileName, lead);
  const std::string shortened = PathText::Shorten(path, name, max, lead);
  Require(shortened.size() <= max);
  if (path.size() <= max) Require(shortened == path);
  if (!lead) Require(shortened == PlainShorten(std::string(path), name, max));
}

}  // namespace

// The first byte is the display limit; then come a path, a line feed and a component.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const size_t max = 11 + data[0] % 64;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const size_t end = text.find('\n');
  const std::string_view path = text.substr(0, end);
  const std::string_view component =
      end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  for (const LeadByteTest lead : {LeadByteTest{nullptr}, LeadByteTest{IsShiftJisLead}}) {
    CheckSplit(path, lead);
    CheckPick(path, lead);
    CheckAppend(path, component, lead);
    CheckExtension(path, component, lead);
    CheckShorten(path, max, lead);
  }
  return 0;
}
