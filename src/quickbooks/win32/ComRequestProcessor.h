// QuickBooks' request processor through COM, its operations called by their names.
#pragma once

#include <vector>

#include "quickbooks/RequestProcessor.h"
#include "quickbooks/win32/AutomationThread.h"

namespace ostrel {

class ComRequestProcessor : public RequestProcessor {
 public:
  ComRequestProcessor(const CLSID& classId, const IID& interfaceId)
      : oClass(classId), oInterface(interfaceId) {}

  void Create() override;
  void OpenConnection(TextView applicationId, TextView applicationName) override;
  Text BeginSession(TextView companyFile, FileMode mode) override;
  Text ProcessRequest(TextView ticket, TextView request) override;
  Text GetCurrentCompanyFileName(TextView ticket) override;
  void EndSession(TextView ticket) override;
  void CloseConnection() override;
  void GiveUp() override { oThread.GiveUp(); }

 private:
  platform::Outcome CreateObject();
  template <typename... Arguments>
  platform::Outcome Call(const wchar_t* operation, const Arguments&... arguments);

  CLSID oClass;
  IID oInterface;
  AutomationThread oThread;
};

}  // namespace ostrel
