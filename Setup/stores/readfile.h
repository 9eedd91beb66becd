#pragma once
// Reading an open file as a whole.
#include <string>

#include "platform/fio.h"

// All bytes of the file, which stands at its beginning; false when its size or its bytes cannot be had.
[[nodiscard]] bool ReadWholeFile(FioFile& file, std::string& bytes);
