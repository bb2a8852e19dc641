// One request to the gateway and its answer, in files: the request is put into the gateway's
// process folder, the answer of the same name is fetched from its response folder.
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

/// What an answer file of these bytes says.
Answer AnswerInFile(std::string_view bytes);

class FolderExchange : public Exchange {
 public:
  /// name: of the request and of the answer, ending in ".osl".
  FolderExchange(TextView processFolder, TextView responseFolder, TextView name,
                 std::chrono::milliseconds timeout);

  /// HandOver, then AwaitAnswer.
  ExchangeResult Run(std::string_view request) override;

  /// Puts the request into the process folder, whole at once. False when it could not be put there,
  /// with the reason set.
  bool HandOver(std::string_view request);
  /// kAnswered, the answer's file being gone; or kTimeout, the reason then telling where the
  /// request is.
  ExchangeResult AwaitAnswer();

 private:
  int PutInProcessFolder(std::string_view request);
  bool TakeAnswer();
  void WaitForChange(std::chrono::milliseconds time);
  ExchangeResult GiveUp();

  Text sProcessFolder, sResponseFolder;
  Text sRequestPath, sDraftPath;  // of the request, when it is there and while it is written
  Text sAnswerPath, sTakenPath;   // of the answer, as the gateway puts it there and once it is ours
  std::chrono::milliseconds oTimeout;
  std::unique_ptr<platform::FolderNotification> oNotification;
  bool bTaken = false;
  int iAnswerError = 0;  // why there is no answer yet
};

}  // namespace ostrel
