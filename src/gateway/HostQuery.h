// Asks QuickBooks which product and version it is.
#pragma once

#include <cstdint>

#include "gateway/IdleClose.h"
#include "gateway/Trace.h"
#include "gateway/qbxml.h"
#include "platform/Clock.h"

namespace ostrel {

class HostQuery {
 public:
  /// The query's qbXML, lines joined by CR LF.
  static const TextView kRequest;

  HostQuery(qbxml& session, IdleClose& idleClose, Trace& trace, const platform::Clock& clock);

  /// Runs the query on the open session. On failure the session is closed, `response` is the
  /// sentence for the failure, and the fields stay what they were. True on success.
  bool Run(Text& response, bool bWriteHistory);

  std::int16_t iQBMajorVersion = 0;  // 0 when the reply gives no number
  std::int16_t iQBMinorVersion = 0;
  Text sQBProductName;
  std::int16_t iQBProductCode =
      0;  // 1 Pro, 2 Premier, 3 Enterprise, 4 Online, 5 Wholesale, 0 unknown
  std::int16_t iQBProductYear = 0;  // 0 unknown

 private:
  void Fail(Text& response, std::int32_t number, bool bWriteHistory);
  Text Findings(TextView reply) const;

  qbxml& oSession;
  IdleClose& oIdleClose;
  Trace& oTrace;
  const platform::Clock& oClock;
};

}  // namespace ostrel
