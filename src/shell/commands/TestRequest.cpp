#include "shell/commands/TestRequest.h"

#include <utility>

#include "gateway/RequestGate.h"

namespace ostrel {

TestRequest::TestRequest(RequestGate& gate, RequestHandler& handler, const qbxml& session,
                         platform::Dialogs& dialogs, frmError& report, Trace& trace)
    : oGate(gate),
      oHandler(handler),
      oSession(session),
      oDialogs(dialogs),
      oReport(report),
      oTrace(trace) {}

void TestRequest::mnuToolsTest_Click() {
  auto request = oDialogs.AskText(u"Request", u"QUICKBOOKSINFO");
  if (!request || request->empty()) return;
  auto pass = EnterOrTell(oGate, oTrace);
  if (!pass) return;
  const Text response = Respond(std::move(*request));
  pass.reset();
  oReport.Caption(u"Test Request");
  oReport.txtError(response);
  oReport.Show();
}

Text TestRequest::Respond(Text request) {
  Text response;
  const float number = oHandler.ProcessRequest(request, response);
  // A refused request has no response; a client would see the number.
  if (response.empty() && number > 0) {
    response = oSession.ErrorDescription(static_cast<std::int32_t>(number));
  }
  return ReplaceAll(response, u"\n", kCrLf);
}

}  // namespace ostrel
