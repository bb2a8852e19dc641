// QuickBooks' request processor through COM, its operations called by their names.
#pragma once

#include <ole2.h>

#include <vector>

#include "quickbooks/RequestProcessor.h"
#include "quickbooks/win32/AutomationThread.h"

namespace ostrel {

/// The identifiers of QuickBooks' request processor. The stand-in registers under the same ones.
inline constexpr CLSID kRequestProcessorClass = {
    0x45F5708E, 0x3B43, 0x4FA8, {0xBE, 0x7E, 0xA5, 0xF1, 0x84, 0x92, 0x14, 0xCB}};
inline constexpr IID kRequestProcessorInterface = {
    0x8DB91B17, 0xD5A2, 0x41DB, {0x80, 0xA7, 0xCC, 0x6F, 0x1E, 0x44, 0x9A, 0x05}};

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
