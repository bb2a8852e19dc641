// Requests in files: takes the request files of the process folder one by one and leaves a
// response of the same name in the response folder. A request file that has been deleted always has
// a response file; one that cannot be taken stays where it is, is told of once and tried again.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "gateway/RequestGate.h"
#include "gateway/Trace.h"
#include "gateway/XmlLayout.h"
#include "platform/EventLoop.h"
#include "transports/FileList.h"
#include "transports/RefusedFiles.h"
#include "transports/RequestFile.h"
#include "transports/RequestProcessing.h"
#include "transports/ResponseFile.h"
#include "transports/ResponseFolder.h"
#include "transports/TransportSettings.h"
#include "transports/clsWatchFolder.h"
#include "util/Text.h"

namespace ostrel {

class FolderTransport {
 public:
  /// Its FolderChanged must call ScanProcessFolder and raise nothing.
  using WatcherFactory = std::function<std::shared_ptr<clsWatchFolder>()>;

  FolderTransport(const TransportSettings& settings, Trace& trace, RequestGate& gate,
                  RequestProcessing processRequest, WatcherFactory createWatcher);

  /// The process folder's request files.
  FileList ProcessList;

  /// Prepares the watch of the settings' process folder and has the tick switched on that begins
  /// it. False, and nothing is changed, when that is the folder of the responses as well: each
  /// response would be taken as a request again. Raises RunTimeError 75 when one of the folders
  /// cannot be created.
  bool Start();
  /// Ends watch and scan on the stack as soon as the handlers above them return.
  void Stop();
  /// Whether it watches. From Start until then it is only switched on.
  bool IsRunning() const { return oWatchFolder != nullptr; }
  bool IsSwitchedOn() const { return bSwitchedOn; }
  /// The folder that is watched, or was last.
  const Text& Folder() const { return ProcessList.Folder(); }

  /// For the start of the program, and part of the start of the watch: every request that was taken
  /// before the gateway was killed gets a response.
  void SettleLeftovers() { oResponses.SettleLeftovers(); }
  /// Takes the request files that wait in the process folder, then watches it until Stop. Blocks as
  /// clsWatchFolder does.
  void tmrProcess_Timer();
  /// Takes the request files of one listing, events dispatched between them; ends early while
  /// another request is in work. Does nothing while a scan is on the stack.
  void ScanProcessFolder(TextView folder);
  /// For every two seconds while the folder is watched, or is to be: takes what no notification
  /// told of, and tries again what could not be done before.
  void LookAgain();

  /// Tells the next waiting client that QuickBooks is still loading. Kept: that is not the one
  /// whose request is in work; the order of the responses follows from it.
  void SendLoadingNotice();

  /// The scan on the stack ends after the file in work, until tmrProcess_Timer begins anew.
  void TakeNoMore() { bTakeNoMore = true; }

  /// Switches the timer that calls tmrProcess_Timer.
  std::function<void(bool on)> SwitchTicks = [](bool) {};
  std::function<void()> DoEvents = platform::DoEvents;
  std::function<int(RequestFile& file)> DeleteRequest = &RequestFile::Delete;
  ResponseWriter WriteResponse = [](TextView response, WholeFile& file) {
    return WriteResponseFile(response, file);
  };
  /// Characters; a longer request is deleted and its response is an error.
  std::size_t lLongestRequest = kLongestRequest;

 private:
  struct Problem {
    float fErrorNumber = 0;  // above 0 when there is one
    TextView sMessage;
  };

  void TakeAgain();
  void Watch();
  void ScanUntilNothingWaits(clsWatchFolder& watcher, TextView folder);
  void TakeListed();
  void Serve(std::size_t index);
  bool Take(const Text& name, ResponseFile& response, Text& request, TextBudget::Share& held,
            Problem& problem);
  bool Refuse(const Text& name, TextView reason, int error);
  void Respond(std::size_t index, Text request, const Problem& problem, ResponseFile& response);
  void ProcessInto(ResponseFile& file, Text request);
  void ListAnew();
  bool IsFolderThere();
  void Log(TextView what, TextView path = {});

  const TransportSettings& oSettings;
  Trace& oTrace;
  RequestGate& oGate;
  ResponseFolder oResponses;
  RequestProcessing ProcessRequest;
  WatcherFactory CreateWatcher;

  std::shared_ptr<clsWatchFolder> oWatchFolder;
  RefusedFiles oRefused;
  std::size_t lTaken = 0;  // request files taken, ever
  bool bScanning = false;
  bool bLooking = false;  // at files that could not be taken before
  bool bSwitchedOn = false;
  bool bTakeNoMore = false;
  bool bFolderGone = false;
};

}  // namespace ostrel
