#pragma once
// The marks inside resource texts: "$" joins several strings into one text, "!tag!" names one. Pure.
#include <cstdint>
#include <string_view>

// From this id on texts and dialogs are the program's own; the language libraries hold those before it.
constexpr uint32_t kFirstProgramId = 20000;

// One loaded string: the text it adds, and the id of the string that continues it, 0 when it is the last.
struct ResPiece {
  std::string_view text;
  uint32_t nextId = 0;
};

// `id` is that of this piece, `firstId` the one that was asked for: it decides what the
// numbers of a chain count from.
ResPiece SplitPiece(std::string_view piece, uint32_t id, uint32_t firstId);

// The text behind its tag; `tagOpen` is set when a tag begins and never ends. "!END!" is no tag.
std::string_view WithoutTag(std::string_view text, bool& tagOpen);
// The tag between the first and the second "!", to the end without a second; empty when there is none.
std::string_view TagOf(std::string_view text);
