// The request is written beside its place and renamed, so that the gateway never sees half of it.
// Its response is renamed before it is read: from then on it is ours, and the gateway may put a
// notice or the next response of the name there. A folder that reports no changes, and one on a
// network that loses some, is looked at twice a second.
#include "clients/FolderExchange.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <random>

#include "platform/EventLoop.h"
#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/SystemError.h"
#include "util/Cures.h"
#include "util/Wire.h"

namespace ostrel {
namespace {

using platform::FileAccess;
using platform::FileCreation;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Network folders lose notifications.
constexpr milliseconds kLookAgain(500);

Text PathIn(TextView folder, TextView name) { return Text(folder) + u"\\" + Text(name); }

}  // namespace

Text UniqueRequestName() {
  constexpr TextView kDigits = u"0123456789abcdef";
  std::random_device random;
  Text name = u"send-";
  for (int i = 0; i < 16; ++i) name.push_back(kDigits[random() % kDigits.size()]);
  return name.append(kRequestExtension);
}

Response ResponseInFile(std::string_view bytes) {
  if (!bytes.starts_with(ToUtf8(kErrorFilePrefix))) return {std::nullopt, std::string(bytes)};
  int number = 0;
  std::from_chars(bytes.data() + kErrorFilePrefix.size(), bytes.data() + bytes.size(), number);
  const std::size_t lineEnd = std::min(bytes.find('\n'), bytes.size() - 1);
  return {number, std::string(bytes.substr(lineEnd + 1))};
}

std::optional<std::string> ReadFileBytes(TextView path, int& error) {
  platform::File file;
  error = file.Open(path, FileAccess::kRead, FileCreation::kOpenExisting);
  if (error != 0) return std::nullopt;
  std::string bytes;
  error = platform::ReadFileContents(file, std::numeric_limits<std::int32_t>::max(), bytes);
  if (error != 0) return std::nullopt;
  return bytes;
}

int WriteFileBytes(TextView path, std::string_view bytes) {
  platform::File file;
  int error = file.Open(path, FileAccess::kWrite, FileCreation::kOpenAlways);
  if (error == 0) error = file.CutAt(0);
  if (error == 0) error = file.WriteAt(0, bytes);
  return error;
}

FolderExchange::FolderExchange(TextView processFolder, TextView responseFolder, TextView name,
                               milliseconds timeout)
    : sProcessFolder(processFolder),
      sResponseFolder(responseFolder),
      sRequestPath(PathIn(processFolder, name)),
      sDraftPath(sRequestPath + u".tmp"),
      sResponsePath(PathIn(responseFolder, name)),
      sTakenPath(sResponsePath + u".taken"),
      oTimeout(timeout),
      oNotification(platform::MakeFolderNotification()) {}

ExchangeResult FolderExchange::Run(std::string_view request) {
  return HandOver(request) ? AwaitResponse() : ExchangeResult::kNotReached;
}

ExchangeResult FolderExchange::Reach() {
  return FoldersAreThere() ? ExchangeResult::kResponded : ExchangeResult::kNotReached;
}

bool FolderExchange::FoldersAreThere() {
  for (const Text& folder : {sProcessFolder, sResponseFolder}) {
    if (platform::FolderExists(folder)) continue;
    reason = u"there is no folder " + folder;
    cure = CureText(CureOf::kFile, platform::kPathNotFound);
    return false;
  }
  return true;
}

bool FolderExchange::HandOver(std::string_view request) {
  if (!FoldersAreThere()) return false;
  const int stale = platform::EraseFile(sResponsePath);
  if (stale != 0 && stale != platform::kFileNotFound) {
    reason =
        u"cannot remove the old answer " + sResponsePath + u": " + platform::SystemErrorText(stale);
    cure = CureText(CureOf::kFile, stale);
    return false;
  }
  oNotification->Open(sResponseFolder);  // without it, looking now and then has to do
  const int error = PutInProcessFolder(request);
  if (error == 0) return true;
  reason =
      u"cannot write into the folder " + sProcessFolder + u": " + platform::SystemErrorText(error);
  cure = CureText(CureOf::kFile, error);
  return false;
}

// Under its own name the gateway would read half of it.
int FolderExchange::PutInProcessFolder(std::string_view request) {
  int error = WriteFileBytes(sDraftPath, request);
  if (error == 0) error = platform::RenamePath(sDraftPath, sRequestPath);
  if (error != 0) platform::EraseFile(sDraftPath);
  return error;
}

ExchangeResult FolderExchange::AwaitResponse() {
  const auto end = steady_clock::now() + oTimeout;
  while (!TakeResponse()) {
    const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
    if (left <= milliseconds::zero()) return GiveUp();
    WaitForChange(std::min(left, kLookAgain));
  }
  return ExchangeResult::kResponded;
}

// A notice may be replaced by the response at any moment: what is read and erased is first given
// another name.
bool FolderExchange::TakeResponse() {
  if (!bTaken) {
    iResponseError = platform::RenamePath(sResponsePath, sTakenPath);
    bTaken = iResponseError == 0;
  }
  if (!bTaken) return false;
  const auto bytes = ReadFileBytes(sTakenPath, iResponseError);
  if (!bytes) return false;
  if (Received) Received(*bytes);
  platform::EraseFile(sTakenPath);
  bTaken = false;

  response = ResponseInFile(*bytes);
  if (response.errorNumber != ErrorNumber::kStillLoading) return true;
  if (StillLoading) StillLoading();
  return false;
}

void FolderExchange::WaitForChange(milliseconds time) {
  if (!oNotification->IsOpen()) return platform::DoEventsFor(time);
  const auto result = oNotification->WaitWithEvents(time);
  const bool changed = result == platform::FolderNotification::WaitResult::kChanged;
  if (changed && oNotification->Rearm() != 0) oNotification->Close();
}

ExchangeResult FolderExchange::GiveUp() {
  reason = u"there was no answer in time";
  cure = CureText(CureOf::kGateway, kNoResponseInTime);
  if (iResponseError != platform::kFileNotFound) {
    reason += u"; " + (bTaken ? sTakenPath : sResponsePath) + u" cannot be read: " +
              platform::SystemErrorText(iResponseError);
  }
  const int error = platform::EraseFile(sRequestPath);
  if (error == 0) {
    reason += u"; the gateway has not taken the request, which was taken back";
  } else if (error == platform::kFileNotFound) {
    reason += u"; the gateway has taken the request, and its answer will be " + sResponsePath;
  } else {
    reason += u"; the request " + sRequestPath + u" could not be taken back: " +
              platform::SystemErrorText(error);
  }
  return ExchangeResult::kTimeout;
}

}  // namespace ostrel
