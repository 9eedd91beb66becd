#pragma once
// Double-byte characters: some code pages have characters of two bytes, the second of which may have the code
// of a backslash, a quote or a letter.

// True for the first byte of such a character. Null: the code page has none.
using LeadByteTest = bool (*)(unsigned char byte);

// The test for the system's ANSI code page.
bool IsAnsiLeadByte(unsigned char byte);
