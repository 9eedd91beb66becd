#include "office/askmacros.h"

#include "messages/format.h"
#include "ui/err.h"

bool AskInstallMacros(unsigned productNameId) {
  constexpr unsigned kQuestionId = 793;
  constexpr unsigned kRefusedId = 794;
  const Str product = MakeTemplate(productNameId, kTemplateExpand);
  if (AskYesNo(Message(kQuestionId).With("ProdName", product)) == kAnswerYes) return true;
  ShowInfo(Message(kRefusedId).With("ProdName", product));
  return false;
}
