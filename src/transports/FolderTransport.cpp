// The way of a request in a file. A scan lists the process folder and serves one file after the
// other: open it, reserve a response file with room for an error, read the request, delete it,
// process it, write the response. The order is the guarantee: a request is deleted before it is
// processed, so that it is never carried out twice, and only after its response has a place, so
// that it is never lost.
//
// A file that cannot be taken yet is refused and stays. The watch tells of new files; the look,
// every two seconds, finds files of which no notification told and tries the refused ones again.
#include "transports/FolderTransport.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "gateway/Guarded.h"
#include "platform/FileSystem.h"
#include "platform/SystemError.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

constexpr TextView kNotInPlace = u"its last response could not be put in place yet";
constexpr TextView kNotReachable = u"its name is no text, or there is a \"\\\" in it";

// The same text for names of one folder that differ in their writing only.
Text FolderKey(TextView folder) {
  Text key = ReplaceAll(LowerCase(folder), u"/", u"\\");
  while (key.ends_with(u'\\')) key.pop_back();
  return key;
}

void CreateFolder(const Text& folder) {
  const int error = cFileIO().ValidateDirectory(folder);
  if (error == 0) return;
  throw RunTimeError(
      ErrorNumber::kPathFileAccess, u"cFileIO.ValidateDirectory",
      u"Unable to create the folder " + folder + u": " + platform::SystemErrorText(error));
}

}  // namespace

FolderTransport::FolderTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                                 RequestProcessing processRequest, WatcherFactory createWatcher)
    : oSettings(settings),
      oTrace(trace),
      oGate(gate),
      oResponses(settings, trace),
      ProcessRequest(std::move(processRequest)),
      CreateWatcher(std::move(createWatcher)) {}

bool FolderTransport::Start() {
  const Text& process = oSettings.sProcessPath;
  const Text& response = oSettings.sResponsePath;
  if (FolderKey(process) == FolderKey(response)) return false;
  CreateFolder(process);
  CreateFolder(response);
  if (platform::IsSameFolder(process, response)) return false;
  ProcessList.SetFolder(process, Text(kRequestPattern));
  TakeAgain();
  SwitchTicks(true);
  return true;
}

// LookAgain takes request files until the watch can begin.
void FolderTransport::TakeAgain() {
  bSwitchedOn = true;
  bTakeNoMore = false;
}

// A watch that fails for want of memory has not begun: the next look tries it again.
void FolderTransport::tmrProcess_Timer() {
  try {
    Watch();
  } catch (...) {
    oWatchFolder = nullptr;
    throw;
  }
}

void FolderTransport::Watch() {
  if (oWatchFolder == nullptr) oWatchFolder = CreateWatcher();
  // Held here: it must outlive its wait, whoever stops the transport meanwhile.
  const auto watcher = oWatchFolder;
  TakeAgain();
  bFolderGone = false;
  const Text folder = ProcessList.Folder();
  oTrace.AddStatus(u"Watching Folder: " + folder);
  SettleLeftovers();
  ScanUntilNothingWaits(*watcher, folder);
  if (watcher == oWatchFolder && !bTakeNoMore) watcher->WatchFolder(folder);
}

// The deletions of these scans cause no event: nothing watches yet.
void FolderTransport::ScanUntilNothingWaits(clsWatchFolder& watcher, TextView folder) {
  std::size_t before = 0;
  do {
    before = lTaken;
    watcher.FolderChanged(folder);
  } while (lTaken != before && !bTakeNoMore && ProcessList.Count() > 0);
}

void FolderTransport::ScanProcessFolder(TextView folder) {
  if (bScanning || bTakeNoMore) return;
  Log(u"Changed ", folder);
  ListAnew();
  if (ProcessList.Names().empty()) {
    return Log(Text(u"No ").append(kRequestPattern).append(u" files found"));
  }
  oTrace.WriteStatusFile({});
  TakeListed();
}

// Kept: the list shrinks with each file taken, count and index stay. Every other file is left to
// the next scan, which the deletions bring about.
void FolderTransport::TakeListed() {
  const Flag scanning(bScanning);
  const std::size_t count = ProcessList.Count();
  for (std::size_t i = 0; i < count && i < ProcessList.Count() && !bTakeNoMore; ++i) {
    {
      const auto pass = oGate.TryEnter();
      if (!pass) return;
      Serve(i);
    }
    DoEvents();
  }
}

void FolderTransport::Serve(std::size_t index) {
  const Text name = ProcessList.At(index);
  const bool isRetry = oRefused.Contains(name);
  const Text path = ProcessList.Folder() + u"\\" + name;
  if (!isRetry) Log(u"Read ", path);

  auto response = oResponses.FileFor(name);
  Text request;
  TextBudget::Share held;  // by the request
  Problem problem;
  if (!Take(name, *response, request, held, problem)) return;
  response->Owe();
  ++lTaken;
  oRefused.Remove(name);
  if (isRetry) Log(u"Read ", path);
  Respond(index, std::move(request), problem, *response);
  oResponses.Place(std::move(response));
}

bool FolderTransport::Take(const Text& name, ResponseFile& response, Text& request,
                           TextBudget::Share& held, Problem& problem) {
  RequestFile file(ProcessList.Folder() + u"\\" + name);
  if (const int error = file.Open()) return Refuse(name, u"it cannot be read", error);
  if (oResponses.IsWaiting(name)) return Refuse(name, kNotInPlace, 0);
  if (const int error = response.Reserve()) {
    return Refuse(name, u"its response cannot be written", error);
  }
  try {
    const int error = file.Read(request, lLongestRequest);
    if (error != 0) return Refuse(name, u"it cannot be read", error);
    held.Resize(request.capacity() * sizeof(char16_t));
  } catch (const std::bad_alloc&) {
    problem = {ErrorNumber::kOutOfMemory, u"Out of memory: the request could not be read"};
  } catch (const std::length_error&) {
    problem = {ErrorNumber::kRequestTooLong, u"The request is too long"};
  }
  // Not processed unless it has gone: it would be processed again and again.
  const int error = DeleteRequest(file);
  return error == 0 || Refuse(name, u"it cannot be deleted", error);
}

bool FolderTransport::Refuse(const Text& name, TextView reason, int error) {
  if (error == platform::kFileNotFound) return false;
  // Its writer is about to end, as a rule: told of when a look finds it so again.
  if (error == platform::kSharingViolation && !(bLooking && oRefused.Contains(name))) {
    oRefused.AddUntold(name);
    return false;
  }
  if (!oRefused.Add(name, reason)) return false;
  Text line = u"Request file " + name + u" waits: ";
  line.append(reason);
  if (error != 0) line.append(u": ").append(platform::SystemErrorText(error));
  oTrace.AddStatus(line);
  return false;
}

void FolderTransport::Respond(std::size_t index, Text request, const Problem& problem,
                              ResponseFile& response) {
  try {
    ProcessList.Remove(index);
    if (problem.fErrorNumber == 0) return ProcessInto(response, std::move(request));
    request = Text();
    Log(u"Write ", response.Path());
    response.WriteError(problem.fErrorNumber, problem.sMessage);
  } catch (const std::bad_alloc&) {
    response.WriteError(ErrorNumber::kOutOfMemory, u"Out of memory");
  } catch (const std::exception&) {
    response.WriteError(ErrorNumber::kInternalError, u"Internal error");
  }
}

void FolderTransport::ProcessInto(ResponseFile& file, Text request) {
  const HeldResponse response = ProcessWithinBudget(ProcessRequest, request);
  request = Text();  // gives its memory to the response's layout
  Log(u"Write ", file.Path());
  if (response.fResult > 0) {
    file.WriteError(response.fResult, response.sText);
  } else {
    file.WriteResponse(response.sText, WriteResponse);
  }
}

void FolderTransport::LookAgain() {
  if (!bSwitchedOn || bScanning || bTakeNoMore || oGate.IsBusy()) return;
  oResponses.PlaceWaiting();
  if (!IsFolderThere()) return;
  ListAnew();
  const auto& names = ProcessList.Names();
  const bool isNews = std::any_of(names.begin(), names.end(),
                                  [this](const Text& name) { return !oRefused.Contains(name); });
  if (isNews) {
    ScanProcessFolder(ProcessList.Folder());
  } else {
    const Flag looking(bLooking);
    TakeListed();  // without a trace of the scan
  }
}

bool FolderTransport::IsFolderThere() {
  const Text& folder = ProcessList.Folder();
  const bool isThere =
      oWatchFolder ? oWatchFolder->IsFolderThere(folder) : platform::FolderExists(folder);
  if (isThere == bFolderGone) {
    bFolderGone = !isThere;
    oTrace.AddStatus((isThere ? u"The process folder is back: " : u"The process folder is gone: ") +
                     folder);
  }
  return isThere;
}

void FolderTransport::SendLoadingNotice() {
  if (ProcessList.Count() == 0) return;
  oResponses.WriteNotice(ProcessList.First(), ErrorNumber::kStillLoading, u"Loading Quickbooks");
}

void FolderTransport::ListAnew() {
  ProcessList.Refresh();
  for (const Text& name : ProcessList.Unreachable()) Refuse(name, kNotReachable, 0);
  oRefused.KeepOnly(ProcessList.Names(), ProcessList.Unreachable());
}

void FolderTransport::Stop() {
  SwitchTicks(false);
  bSwitchedOn = false;
  bTakeNoMore = true;
  oRefused.Clear();
  const auto watcher = std::exchange(oWatchFolder, nullptr);
  if (watcher != nullptr) watcher->WatchStop();
}

void FolderTransport::Log(TextView what, TextView path) {
  if (!oTrace.CommLogEnabled()) return;
  oTrace.WriteCommLog(Text(u"Folder Watched\t").append(what).append(path));
}

}  // namespace ostrel
