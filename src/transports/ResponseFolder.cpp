// Names beside a place have to be found again after a crash: SettleLeftovers turns each such name
// back into the name of its request and decides from the ending, and from whether the request file
// is still there, what the client is owed. A file that a running gateway has open is in work and is
// left alone. Every step replaces one file by another in one operation, so that a gateway which is
// killed in the middle finds the same leftovers at its next start.
#include "transports/ResponseFolder.h"

#include <algorithm>
#include <utility>

#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

constexpr TextView kGatewayEnded =
    u"the gateway ended while this request was in work; it may have been carried out";

// The gateway that writes such a file has it open.
bool IsInWork(const Text& path) {
  platform::File file;
  return file.Open(path, platform::FileAccess::kReadWrite, platform::FileCreation::kOpenExisting,
                   platform::FileLinks::kRefuse) != 0;
}

}  // namespace

struct ResponseFolder::Beside {
  TextView sEnding;
  char16_t iSmallLetter, iCapital;  // in the place of the last letter where the ending is too long
};

const ResponseFolder::Beside ResponseFolder::kReserved = {u".part", u'p', u'P'};
const ResponseFolder::Beside ResponseFolder::kFinished = {u".done", u'd', u'D'};
const ResponseFolder::Beside ResponseFolder::kNotice = {u".note", u'n', u'N'};

ResponseFolder::ResponseFolder(const TransportSettings& settings, Trace& trace)
    : oSettings(settings), oTrace(trace) {}

Text ResponseFolder::NameBeside(TextView name, const Beside& beside) {
  Text longer = Text(name).append(beside.sEnding);
  if (!platform::IsNameTooLong(longer)) return longer;
  Text changed(name);
  changed.back() = name.back() == u'l' ? beside.iSmallLetter : beside.iCapital;
  return changed;
}

std::optional<Text> ResponseFolder::RequestOf(TextView nameBeside, const Beside& beside) {
  const bool hasEnding = nameBeside.ends_with(beside.sEnding);
  const char16_t last = nameBeside.back();
  // Most names are those of old responses, of which there may be any number.
  if (!hasEnding && last != beside.iSmallLetter && last != beside.iCapital) return std::nullopt;
  Text name(nameBeside);
  if (hasEnding) {
    name.resize(name.size() - beside.sEnding.size());
  } else {
    name.back() = last == beside.iSmallLetter ? u'l' : u'L';
  }
  const bool isOne =
      LowerCase(name).ends_with(kRequestExtension) && NameBeside(name, beside) == nameBeside;
  return isOne ? std::optional(std::move(name)) : std::nullopt;
}

std::unique_ptr<ResponseFile> ResponseFolder::FileFor(TextView name) const {
  return std::make_unique<ResponseFile>(
      ResponseFile::Paths{PathOf(name), PathBeside(name, kReserved), PathBeside(name, kFinished)});
}

void ResponseFolder::Place(std::unique_ptr<ResponseFile> response) {
  const int error = response->PutInPlace();
  if (error == 0) return;
  oWaiting.push_back(std::move(response));
  oTrace.AddStatus(u"Response file " + oWaiting.back()->Path() +
                   u" waits: it cannot be put in place: " + platform::SystemErrorText(error));
}

bool ResponseFolder::IsWaiting(TextView name) const {
  const Text path = PathOf(name);
  return std::any_of(oWaiting.begin(), oWaiting.end(), [&](const auto& response) {
    return platform::IsSameName(response->Path(), path);
  });
}

void ResponseFolder::PlaceWaiting() {
  std::erase_if(oWaiting, [](const auto& response) { return response->PutInPlace() == 0; });
}

void ResponseFolder::WriteNotice(TextView name, float errorNumber, TextView message) {
  const Text path = PathOf(name);
  if (IsWaiting(name) || platform::KindOf(path) == platform::EntryKind::kLink) return;
  WholeFile file(path, PathBeside(name, kNotice));
  if (file.Open() && WriteErrorFile(file, errorNumber, message)) file.PutInPlace();
}

void ResponseFolder::SettleLeftovers() {
  const std::vector<Text> names = platform::ListFiles(oSettings.sResponsePath, u"*");
  ForEachLeftover(names, kNotice, [this](const Text& name) { SettleNotice(name); });
  ForEachLeftover(names, kFinished, [this](const Text& name) { SettleFinished(name); });
  // Without its folder nobody can tell whether a request is still there.
  if (!platform::FolderExists(oSettings.sProcessPath)) return;
  ForEachLeftover(names, kReserved, [this](const Text& name) { SettleReserved(name); });
}

template <typename Settle>
void ResponseFolder::ForEachLeftover(const std::vector<Text>& names, const Beside& beside,
                                     Settle settle) {
  for (const Text& found : names) {
    const auto name = RequestOf(found, beside);
    if (name && !IsWaiting(*name)) settle(*name);
  }
}

void ResponseFolder::SettleNotice(const Text& name) {
  const Text path = PathBeside(name, kNotice);
  if (!IsInWork(path)) platform::EraseFile(path);
}

void ResponseFolder::SettleFinished(const Text& name) { AdoptFinished(name, kFinished); }

void ResponseFolder::SettleReserved(const Text& name) {
  const Text path = PathBeside(name, kReserved);
  if (IsInWork(path)) return;
  if (platform::KindOf(oSettings.sProcessPath + u"\\" + name) != platform::EntryKind::kNone) {
    platform::EraseFile(path);
    return;
  }
  Text line = u"Request file " + name + u" was in work when the gateway ended";
  if (const int error = TellClientOfEnd(name)) {
    oTrace.AddStatus(line + u"; its response cannot be written: " +
                     platform::SystemErrorText(error));
    return;
  }
  oTrace.AddStatus(line + u"; it may have been carried out");
  AdoptFinished(name, kReserved);
}

// The reserved file is replaced in one step: a gateway that is killed here does it again.
int ResponseFolder::TellClientOfEnd(const Text& name) {
  WholeFile file(PathBeside(name, kReserved), PathBeside(name, kNotice));
  const bool isDone = file.Open() &&
                      WriteErrorFile(file, ErrorNumber::kGatewayEnded, kGatewayEnded) &&
                      file.PutInPlace();
  return isDone ? 0 : file.Error();
}

void ResponseFolder::AdoptFinished(const Text& name, const Beside& beside) {
  auto response = FileFor(name);
  response->Adopt(PathBeside(name, beside));
  Place(std::move(response));
}

Text ResponseFolder::PathOf(TextView name) const {
  return Text(oSettings.sResponsePath).append(u"\\").append(name);
}

Text ResponseFolder::PathBeside(TextView name, const Beside& beside) const {
  return PathOf(NameBeside(name, beside));
}

}  // namespace ostrel
