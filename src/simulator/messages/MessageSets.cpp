// A set is a record of the company. It is written before the first message is processed, without
// responses, and once more with them: whatever happens between, the same request is not carried
// out again. A set that was begun and not finished says so (kNoResponse), and the client looks
// into the company to see how far it came.
#include "simulator/messages/MessageSets.h"

#include <algorithm>
#include <iterator>

#include "simulator/company/Draft.h"
#include "simulator/company/Journal.h"
#include "simulator/company/Records.h"
#include "simulator/grammar/Grammar.h"
#include "simulator/values/Status.h"
#include "simulator/xml/XmlWriter.h"

namespace ostrel::simulator {
namespace {

constexpr std::string_view kSetKind = "MessageSet";
constexpr std::size_t kMaxIdLength = 24;
constexpr std::size_t kMostSets = 100;
constexpr std::size_t kMostKeptBytes = 8 * 1024 * 1024;  // of one set
constexpr std::size_t kMostKeptOfAll = 32 * 1024 * 1024;
constexpr std::size_t kPartBytes = 256 * 1024;  // less than one text of a file may have
constexpr std::string_view kFrameAttributes[] = {"onError", "newMessageSetID", "oldMessageSetID",
                                                 "responseData"};

std::string AttributeOf(const Element& messages, std::string_view name) {
  const std::string* value = messages.Find(name);
  return value ? *value : "";
}

void RequireRightAttributes(const Element& messages) {
  const bool known = std::ranges::all_of(messages.attributes, [](const Attribute& attribute) {
    return std::ranges::find(kFrameAttributes, attribute.name) != std::end(kFrameAttributes);
  });
  const std::string* data = messages.Find("responseData");
  if (!known || (data && *data != "includeAll" && *data != "includeNone")) {
    Fail(Hresult::kParseError);
  }
}

// Of what the messages say, not of how they are written.
std::string ChecksumOf(const Element& messages) {
  XmlWriter xml(XmlForm::kFile);
  for (const Element& message : messages.children) xml.Write(message);
  return ChecksumText(Checksum(xml.Take()));
}

std::size_t KeptBytes(const Element& set) {
  std::size_t bytes = 0;
  for (const Element& child : set.children) {
    if (child.name == "Part") bytes += child.text.size();
  }
  return bytes;
}

// The oldest sets are forgotten when there are too many, or when they keep too much.
// There is room for one more of so many bytes then; `current` is not forgotten.
void ForgetOldest(const Company& company, std::size_t newBytes, std::string_view current,
                  Draft& draft) {
  const auto& sets = Records(company, kSetKind);
  std::size_t count = sets.size() + (current.empty() ? 1 : 0);
  std::size_t bytes = newBytes;
  for (const auto& [key, set] : sets) bytes += KeptBytes(set);
  for (const auto& [key, set] : sets) {
    if (count <= kMostSets && bytes <= kMostKeptOfAll) return;
    const std::string_view id = set.ChildText("RecordID");
    if (id == current) continue;
    draft.Remove(*FindKind(kSetKind), id);
    --count;
    bytes -= KeptBytes(set);
  }
}

}  // namespace

MessageSets::MessageSets(const Element& messages, OpenCompany& company, const Stamp& now)
    : oCompany(company),
      sNewId(AttributeOf(messages, "newMessageSetID")),
      sOldId(AttributeOf(messages, "oldMessageSetID")),
      sNow(now.text),
      bNamed(!sNewId.empty() || !sOldId.empty()),
      bKeepsData(AttributeOf(messages, "responseData") != "includeNone") {
  RequireRightAttributes(messages);
  if (!sNewId.empty()) sChecksum = ChecksumOf(messages);
}

bool MessageSets::Begin() {
  if (std::max(CharacterCount(sNewId), CharacterCount(sOldId)) > kMaxIdLength) {
    return Refuse(SetStatus::kIdTooLong);
  }
  if (sNewId.empty()) return Recall(Find(sOldId));
  const Element* known = sNewId == sOldId ? nullptr : Find(sNewId);
  if (!known) return Remember() || Refuse(SetStatus::kCannotKeep);
  if (known->ChildText("Checksum") != sChecksum) return Refuse(SetStatus::kOtherRequest);
  return Recall(known);
}

const Element* MessageSets::Find(std::string_view id) const {
  const auto& sets = Records(oCompany.Data(), kSetKind);
  const auto found = std::ranges::find_if(
      sets, [&](const auto& entry) { return entry.second.ChildText("ID") == id; });
  return found == sets.end() ? nullptr : &found->second;
}

bool MessageSets::Refuse(SetStatus status) {
  iStatus = status;
  return false;
}

bool MessageSets::Recall(const Element* set) {
  if (!set) return Refuse(SetStatus::kUnknown);
  if (!IsTrue(set->ChildText("IsKept"))) return Refuse(SetStatus::kNoResponse);
  for (const Element& child : set->children) {
    if (child.name == "Part") sKept += child.text;
  }
  return false;
}

// The old set is forgotten with the same change.
bool MessageSets::Remember() {
  const Company& company = oCompany.Data();
  const Kind& kind = *FindKind(kSetKind);
  Draft draft(company);
  ForgetOldest(company, 0, {}, draft);
  const Element* old = sOldId.empty() ? nullptr : Find(sOldId);
  if (old) draft.Remove(kind, old->ChildText("RecordID"));
  Element set = NewRecord(company, kSetKind);
  sRecordId = set.ChildText("RecordID");
  set.Add("ID", sNewId);
  set.Add("TimeCreated", sNow);
  set.Add("Checksum", sChecksum);
  set.Add("IsKept", "false");
  draft.Put(kind, std::move(set));
  return oCompany.Commit(draft.Take()) == 0;
}

void MessageSets::Keep(std::string_view responses) {
  iStatus = SetStatus::kCannotKeep;
  const Company& company = oCompany.Data();
  const Kind& kind = *FindKind(kSetKind);
  if (responses.size() > kMostKeptBytes || !company.List(kind).Find(sRecordId)) return;
  Draft draft(company);
  ForgetOldest(company, responses.size(), sRecordId, draft);
  Element& set = draft.Edit(kind, sRecordId);
  set.Set("IsKept", "true");
  for (; !responses.empty(); responses.remove_prefix(std::min(responses.size(), kPartBytes))) {
    set.Add("Part", responses.substr(0, kPartBytes));
  }
  if (oCompany.Commit(draft.Take()) == 0) iStatus = SetStatus::kDone;
}

std::vector<Attribute> MessageSets::Attributes() const {
  if (!bNamed) return {};
  return {{"newMessageSetID", sNewId.empty() ? sOldId : sNewId},
          {"messageSetStatusCode", std::to_string(static_cast<int>(iStatus))}};
}

}  // namespace ostrel::simulator
