#include "simulator/company/Deletions.h"

#include "simulator/company/Objects.h"
#include "simulator/company/Records.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kDeletionKind = "Deletion";
constexpr std::size_t kMostDeletions = 10'000;

}  // namespace

void Delete(const Kind& kind, const Element& object, const Stamp& now, Draft& draft) {
  const std::string_view id = object.ChildText(kind.IdField());
  Element deletion = NewRecord(draft.Before(), kDeletionKind);
  deletion.Add("Kind", kind.name);
  deletion.Add(kind.IdField(), id);
  deletion.Add("TimeCreated", object.ChildText("TimeCreated"));
  deletion.Add("TimeDeleted", now.text);
  if (kind.category == Category::kList) {
    deletion.Add("FullName", FullNameOf(kind, object));
  } else if (object.Child("RefNumber")) {
    deletion.Add("RefNumber", object.ChildText("RefNumber"));
  }
  const auto& deletions = Records(draft.Before(), kDeletionKind);
  const Kind& recordKind = *FindKind(kDeletionKind);
  if (deletions.size() >= kMostDeletions) {
    draft.Remove(recordKind, deletions.begin()->second.ChildText(recordKind.IdField()));
  }
  draft.Remove(kind, id);
  draft.Put(recordKind, std::move(deletion));
}

}  // namespace ostrel::simulator
