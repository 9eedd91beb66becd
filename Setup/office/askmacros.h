#pragma once
// The question whether the product's commands go into an Office program.

// `productNameId`: resource string naming the program. A refusal is confirmed with
// advice; a silent run installs.
[[nodiscard]] bool AskInstallMacros(unsigned productNameId);
