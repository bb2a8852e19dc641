// A request by hand: the text that is typed in is carried out as a database's request would be.
#pragma once

#include "gateway/RequestGate.h"
#include "gateway/RequestHandler.h"
#include "gateway/Trace.h"
#include "gateway/qbxml.h"
#include "platform/Dialogs.h"
#include "shell/forms/frmError.h"

namespace ostrel {

class TestRequest {
 public:
  TestRequest(RequestGate& gate, RequestHandler& handler, const qbxml& session,
              platform::Dialogs& dialogs, frmError& report, Trace& trace);

  /// The menu item "Test Request".
  void mnuToolsTest_Click();

 private:
  Text Respond(Text request);

  RequestGate& oGate;
  RequestHandler& oHandler;
  const qbxml& oSession;
  platform::Dialogs& oDialogs;
  frmError& oReport;
  Trace& oTrace;
};

}  // namespace ostrel
