// The history file of one request, put together while the request is processed. Without bHistory at
// the start of the request it does nothing. Never raises: a request is carried out without its
// history when there is no memory for it.
#pragma once

#include "gateway/GatewaySettings.h"
#include "gateway/HistoryFiles.h"
#include "gateway/Trace.h"
#include "platform/Clock.h"
#include "util/cFileIO.h"

namespace ostrel {

class RequestHistory {
 public:
  /// The file is named after this moment.
  RequestHistory(const GatewaySettings& settings, Trace& trace, const platform::Clock& clock,
                 HistoryFiles& files);

  /// Notes the request as it was received.
  void Begin(TextView rawRequest);
  /// Writes the file. The request as it went to QuickBooks is laid out in its place; a response
  /// gets its line breaks turned into CR LF unless QuickBooks could not parse the request. A file
  /// that cannot be opened is skipped.
  void Write(Text& request, TextView response, bool isParseError);

 private:
  template <typename Step>
  void Attempt(Step step);
  void AddLine(TextView line);
  void TellOfLink(const cFileIO& file);

  const GatewaySettings& oSettings;
  Trace& oTrace;
  const platform::Clock& oClock;
  HistoryFiles& oFiles;
  bool bOn;
  Text sStartTime;
  Text sHistoryBuffer;  // lines separated by the attribute mark
};

}  // namespace ostrel
