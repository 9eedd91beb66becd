#pragma once
// The wait for Word and PowerPoint to be closed (dialog 2500).

// True once neither is open; false when the user quit, or at once in a silent run.
[[nodiscard]] bool WaitForOfficeToClose();
