#pragma once
// Files of the system's LZ compression (pure): a signature of 8 bytes, the mode, a letter of the name, the
// expanded size in 32 bits; then groups of a control byte and eight items, each a byte itself (bit 1) or two
// bytes that stand for 3 to 18 earlier ones (bit 0).
#include <cstddef>
#include <string_view>

constexpr size_t kSzddHeaderSize = 14;  // bytes

// Whether `bytes` begin like such a file.
bool IsSzdd(std::string_view bytes);
// Whether a file that IsSzdd holds all that its header promises. The system installs what
// is there of one cut short.
bool IsSzddWhole(std::string_view bytes);
