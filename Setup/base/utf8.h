#pragma once
// Decoding of UTF-8 text.
#include <string>
#include <string_view>

// Decodes `text` into UTF-16 units. A byte of the form 110xxxxx leads two bytes, any other byte from 0x80 on
// leads three. Continuation bytes are not validated; a NUL, or the end of `text`, in any place of a sequence
// ends the text.
std::u16string DecodeUtf8(std::string_view text);
