#include "gateway/RequestHistory.h"

#include <exception>

#include "gateway/XmlLayout.h"
#include "platform/SystemError.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

const Text kRule(60, u'=');

}  // namespace

RequestHistory::RequestHistory(const GatewaySettings& settings, Trace& trace,
                               const platform::Clock& clock, HistoryFiles& files)
    : oSettings(settings),
      oTrace(trace),
      oClock(clock),
      oFiles(files),
      bOn(settings.bHistory),
      sStartTime(clock.GeneralDate(clock.Now())) {}

void RequestHistory::Begin(TextView rawRequest) {
  Attempt([&] {
    sHistoryBuffer = oTrace.HistoryHeader();
    AddLine(u"Raw Data:");
    AddLine(rawRequest);
    AddLine(kRule);
  });
}

void RequestHistory::Write(Text& request, TextView response, bool isParseError) {
  Attempt([&] {
    FormatXmlText(request);
    AddLine(request);
    AddLine(kRule);
    if (isParseError) {
      AddLine(response);
    } else {
      AddLine(ReplaceAll(response, u"\n", kCrLf));
    }
    AddLine(kRule);
    AddLine(u"Start: " + sStartTime);
    // Kept: no blank after this colon.
    sHistoryBuffer.append(u"End:").append(oClock.GeneralDate(oClock.Now()));
    cFileIO file;
    const bool isOpen = oFiles.Open(file, oSettings, sStartTime);
    oTrace.AddStatus(u"Creating Log File: " + file.FileName());
    if (!isOpen) return TellOfLink(file);
    file.WriteData(sHistoryBuffer, -1, u"A");
    file.CloseFile();
  });
}

template <typename Step>
void RequestHistory::Attempt(Step step) {
  if (!bOn) return;
  try {
    step();
  } catch (const std::exception&) {
    bOn = false;
    sHistoryBuffer = {};
    oTrace.AddStatus(u"The history of this request could not be written");
  }
}

void RequestHistory::AddLine(TextView line) {
  sHistoryBuffer.append(line).push_back(kAttributeMark);
}

// Kept: any other file that cannot be opened is skipped without a word.
void RequestHistory::TellOfLink(const cFileIO& file) {
  Text message;
  std::int32_t number = 0;
  file.ReadErrorHandler(message, number);
  if (number != platform::kStoppedOnLink) return;
  oTrace.AddStatus(u"Not written, since it is a link: " + file.FullFileName());
}

}  // namespace ostrel
