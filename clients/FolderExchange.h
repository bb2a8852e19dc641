// One request to the gateway and its response, in files: the request is put into the gateway's
// process folder, the response of the same name is fetched from its response folder.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "clients/Exchange.h"
#include "platform/FolderNotification.h"
#include "util/Text.h"

namespace ostrel {

/// A name for a request file that no other request has.
Text UniqueRequestName();

/// The response that a file of these bytes holds.
Response ResponseInFile(std::string_view bytes);

/// A whole file, byte for byte. Nothing when it cannot be read, with the number of
/// platform/SystemError.h in `error`.
std::optional<std::string> ReadFileBytes(TextView path, int& error);

/// Replaces what the file held by these bytes. 0, or the error number; part of the file may be
/// there then.
int WriteFileBytes(TextView path, std::string_view bytes);

class FolderExchange : public Exchange {
 public:
  /// name: of the request and of the response, ending in ".osl".
  FolderExchange(TextView processFolder, TextView responseFolder, TextView name,
                 std::chrono::milliseconds timeout);

  /// HandOver, then AwaitResponse.
  ExchangeResult Run(std::string_view request) override;
  /// Looks whether both folders are there.
  ExchangeResult Reach() override;

  /// Puts the request into the process folder, whole at once. False when it could not be put there,
  /// with the reason set.
  bool HandOver(std::string_view request);
  /// kResponded, the response's file being gone; or kTimeout, the reason then telling where the
  /// request is.
  ExchangeResult AwaitResponse();

 private:
  bool FoldersAreThere();
  int PutInProcessFolder(std::string_view request);
  bool TakeResponse();
  void WaitForChange(std::chrono::milliseconds time);
  ExchangeResult GiveUp();

  Text sProcessFolder, sResponseFolder;
  Text sRequestPath, sDraftPath;  // of the request, when it is there and while it is written
  Text sResponsePath,
      sTakenPath;  // of the response, as the gateway puts it there and once it is ours
  std::chrono::milliseconds oTimeout;
  std::unique_ptr<platform::FolderNotification> oNotification;
  bool bTaken = false;
  int iResponseError = 0;  // why there is no response yet
};

}  // namespace ostrel
