#pragma once
// The headers and the resources of a program or library file. Pure: no files, no Windows.
#include <cstdint>

#include "base/bytes.h"

// How many bytes a file that begins with `head` must have to hold what its sections use; 0 when its headers
// are not those of a program or library, or do not lie in `head` as a whole.
uint64_t ImageFileSize(Bytes head);
// Whether every resource that the file's directory of resources leads to, and the directory itself, lies in
// the file; also true without resources. The system follows a damaged directory wherever it leads.
bool ImageResourcesLieInFile(Bytes file);
