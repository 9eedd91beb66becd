#pragma once
// What this run does and where: the main dialog (1200), and the same choices made without it.
#include <cstdint>

#include "base/str.h"

enum SelectionMode : int32_t { kModeInstall = 1, kModeWorkstation = 2, kModeRemove = 3 };

// Mode of a radio button; asserts for one that is no valid selection and gives the
// mode of the install button.
SelectionMode ModeOfButton(int buttonId, bool workstation);
// String id of the folder field's label.
unsigned FolderLabel(SelectionMode mode);
// The user may change the folder in this mode.
bool MayChangeFolder(SelectionMode mode);
// String id of the text that explains the install mode.
unsigned InstallText();

// Takes the folder as the run's destination: creates it for an installation, requires it for a removal, and
// stores it in ProgDir. False, after a message, when it cannot be taken.
[[nodiscard]] bool AcceptFolder(SelectionMode mode, const Str& folder);

// Shows the dialog; false when the user quit. Choosing removal clears the install flag.
[[nodiscard]] bool ShowMainDialog();
// The effects of OK with the dialog's default state, for a run without dialogs. Trouble is
// logged, and the run goes on.
void AcceptMainDefaults();
