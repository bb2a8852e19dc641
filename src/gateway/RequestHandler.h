// The one routine through which every request passes, whichever transport brought it: the
// gateway's own commands, and everything else as qbXML to QuickBooks.
#pragma once

#include "gateway/GatewaySettings.h"
#include "gateway/HistoryFiles.h"
#include "gateway/HostQuery.h"
#include "gateway/IdleClose.h"
#include "gateway/Trace.h"
#include "gateway/qbxml.h"
#include "platform/Clock.h"

namespace ostrel {

class RequestHandler {
 public:
  RequestHandler(GatewaySettings& settings, qbxml& session, HostQuery& hostQuery,
                 IdleClose& idleClose, Trace& trace, const platform::Clock& clock);

  /// 0: success; above 0: the reduced error number of the request processor, or what qbxml and the
  /// gateway report themselves. Never raises. The request is changed in place and must not be used
  /// afterwards. The caller holds the RequestGate's pass.
  float ProcessRequest(Text& request, Text& response);

  /// Ends the session and closes the connection at once (the File menu's close command, and
  /// CLOSEQB:); the idle close may act again.
  void CloseQuickBooks();

 private:
  std::int32_t Process(Text& request, Text& response);
  std::int32_t SelectCompanyFile(TextView request, Text& response);
  std::int32_t Refuse(std::int32_t number, Text reason, Text& response);
  std::int32_t CloseOnRequest(Text& response);
  std::int32_t Submit(Text& request, Text& response, bool isHostQuery);
  std::int32_t EnsureSession(Text& response);
  void OpenFailed(std::int32_t number, Text& response);
  void RequestFailed(std::int32_t number, TextView request, Text& response);
  void AddProduct(Text& response);
  Text FailureLine(std::int32_t number) const;
  void ExtendIdleClose();

  GatewaySettings& oSettings;
  qbxml& oSession;
  HostQuery& oHostQuery;
  IdleClose& oIdleClose;
  Trace& oTrace;
  const platform::Clock& oClock;
  HistoryFiles oHistoryFiles;
};

}  // namespace ostrel
