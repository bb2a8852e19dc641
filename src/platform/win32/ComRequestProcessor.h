// QuickBooks' request processor through COM, its operations called by their names.
#pragma once

#include <vector>

#include "platform/RequestProcessor.h"
#include "platform/win32/AutomationThread.h"

namespace ostrel::platform {

class ComRequestProcessor : public RequestProcessor {
 public:
  /// Creates the class's object. Raises RequestProcessorError.
  ComRequestProcessor(const CLSID& classId, const IID& interfaceId);

  void OpenConnection(TextView applicationId, TextView applicationName) override;
  Text BeginSession(TextView companyFile, FileMode mode) override;
  Text ProcessRequest(TextView ticket, TextView request) override;
  Text GetCurrentCompanyFileName(TextView ticket) override;
  void EndSession(TextView ticket) override;
  void CloseConnection() override;
  void GiveUp() override { oThread.GiveUp(); }

 private:
  Outcome Create();
  template <typename... Arguments>
  Outcome Call(const wchar_t* operation, const Arguments&... arguments);

  CLSID oClass;
  IID oInterface;
  AutomationThread oThread;
};

}  // namespace ostrel::platform
