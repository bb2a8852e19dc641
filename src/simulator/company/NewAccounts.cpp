#include "simulator/company/NewAccounts.h"

#include "simulator/company/Accounts.h"
#include "simulator/company/Defaults.h"

namespace ostrel::simulator {

std::string NeedAccount(SpecialAccount account, Numbers& numbers, const Stamp& now, Draft& draft) {
  std::string& id = draft.IdOf(account);
  if (!id.empty()) return id;
  if (const Element* found = FindAccount(draft.Before(), account)) {
    return id = found->ChildText("ListID");
  }
  const AccountDescription& description = DescriptionOf(account);
  const Kind& kind = *FindKind("Account");
  Element made{.name = std::string(kind.name)};
  made.Add("Name", description.name);
  made.Add("AccountType", description.type);
  made.Add("SpecialAccountType", description.special);
  Complete(kind, made, draft.Before(), numbers, now);
  id = made.ChildText("ListID");
  draft.Put(kind, std::move(made));
  return id;
}

}  // namespace ostrel::simulator
