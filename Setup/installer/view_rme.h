#pragma once
// The finishing step of a successful interactive install: readme, start of the product, restart (dialogs
// 2600, 2700, 2800).

// What the user chose when leaving the dialog. A box that the dialog lacks counts as unchecked.
struct FinishChoice {
  bool accepted = false;  // left by the first button
  bool viewReadMe = false;
  bool launch = false;
};

// The dialog that fits: a restart is needed / the readme is offered / neither.
unsigned FinishingDialog();
// Acts on the choice: reboot request, readme now or at the next logon, start of the product.
void ActOnFinishChoice(const FinishChoice& choice);
// Shows the dialog and acts on it.
void RunFinishingStep();
