#pragma once
// Restarting Windows at the end of a run.

// False when the privilege is missing or Windows refuses.
[[nodiscard]] bool RestartWindows();
