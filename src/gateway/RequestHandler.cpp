// One request runs through here from its text to its response text: recognise the command, remove
// the header line, open the session if none is open, submit, write the history. Failures of
// QuickBooks come as numbers, since the session never raises; other failures are caught in
// ProcessRequest, so that a transport always has a response. The request is changed in place,
// because it may take hundreds of megabytes.
#include "gateway/RequestHandler.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "gateway/RequestHistory.h"
#include "gateway/XmlLayout.h"
#include "platform/SystemError.h"
#include "quickbooks/ErrorNumbers.h"
#include "util/Cures.h"
#include "util/RunTimeError.h"
#include "util/Wire.h"
#include "util/cFileIO.h"

namespace ostrel {
namespace {

enum class Command { kSelectCompanyFile, kInformation, kOpen, kClose, kQbxml };

struct Keyword {
  TextView word;
  Command command;
};

// Kept: a keyword counts wherever it stands, in upper case, and the first in this order wins.
constexpr Keyword kKeywords[] = {
    {u"QBFILENAME:", Command::kSelectCompanyFile},
    {u"QUICKBOOKSINFO", Command::kInformation},
    {u"OPENQB:", Command::kOpen},
    {u"CLOSEQB:", Command::kClose},
};

constexpr TextView kCloseReply =
    u"<QBXML><QBXMLMsgsRs><CloseQBRs requestID=\"99\" statusCode=\"0\" statusSeverity=\"Info\" "
    u"statusMessage=\"Status OK\"><CloseQBRet>OK</CloseQBRet></CloseQBRs></QBXMLMsgsRs></QBXML>";

Command Recognise(TextView request) {
  for (const Keyword& keyword : kKeywords) {
    if (Contains(request, keyword.word)) return keyword.command;
  }
  return Command::kQbxml;
}

void MarksToLineBreaks(Text& request) {
  if (!Contains(request, kAttributeMarkText)) return;
  request = ReplaceAll(request, kAttributeMarkText, kCrLf);
}

// The header names the client's routine; requests of the older routines have none.
void RemoveHeaderLine(Text& request) {
  if (request.starts_with(u"<?xml") || request.starts_with(u"<?qbxml")) return;
  const std::size_t at = request.find(kCrLf);
  request.erase(0, at == Text::npos ? at : at + kCrLf.size());
}

bool HoldsPrologOnly(TextView request) { return request.rfind(u'<') == 0; }

// Blanks are trimmed before the rest of the lines is cut off.
TextView CompanyFileIn(TextView request) {
  const TextView name = TrimBlanks(request.substr(request.find(u':') + 1));
  return name.substr(0, name.find_first_of(Text(kCrLf).append(kAttributeMarkText)));
}

// Puts the company file of the settings into `name`. Empty, or why it cannot be told.
Text ReadDefaultCompanyFile(const Text& iniFile, Text& name) {
  cFileIO file;
  file.FullFileName(iniFile);
  file.ReadINI(u"Quickbooks", u"FileName", name);
  Text message;
  std::int32_t error = 0;
  if (!file.ReadErrorHandler(message, error)) return {};
  if (error == platform::kMoreData) {
    return u"The company file name in the settings is longer than 99 characters";
  }
  return u"The settings file cannot be read: " + platform::SystemErrorText(error);
}

Text FailureWith(std::int32_t number, TextView sentence) {
  Text line = u"Request failed: " + ToText(std::int64_t{number}) + u" " + Text(sentence);
  if (!line.ends_with(u'.')) line.push_back(u'.');
  return line;
}

float Fail(std::int32_t number, TextView description, Text& response) {
  response = description;
  return static_cast<float>(std::max(number, 1));
}

}  // namespace

RequestHandler::RequestHandler(GatewaySettings& settings, qbxml& session, HostQuery& hostQuery,
                               IdleClose& idleClose, Trace& trace, const platform::Clock& clock)
    : oSettings(settings),
      oSession(session),
      oHostQuery(hostQuery),
      oIdleClose(idleClose),
      oTrace(trace),
      oClock(clock) {}

float RequestHandler::ProcessRequest(Text& request, Text& response) {
  try {
    return static_cast<float>(Process(request, response));
  } catch (const RunTimeError& error) {
    return Fail(error.Number, error.Description, response);
  } catch (const std::bad_alloc&) {
    return Fail(ErrorNumber::kOutOfMemory, u"Out of memory", response);
  } catch (const std::exception&) {
    return Fail(ErrorNumber::kInternalError, u"Internal error", response);
  }
}

void RequestHandler::CloseQuickBooks() {
  oSession.EndSessionAndCloseConnection();
  oIdleClose.dCloseAt = oClock.SteadyNow();
  oIdleClose.bAutoClose = true;
}

std::int32_t RequestHandler::Process(Text& request, Text& response) {
  RequestHistory history(oSettings, oTrace, oClock, oHistoryFiles);
  history.Begin(request);
  MarksToLineBreaks(request);
  const Command command = Recognise(request);
  if (command == Command::kSelectCompanyFile) return SelectCompanyFile(request, response);
  if (command == Command::kClose) return CloseOnRequest(response);
  if (command == Command::kOpen) oIdleClose.bAutoClose = false;

  const bool isHostQuery = command != Command::kQbxml;
  if (isHostQuery) request = u"HostQuery\r\n" + Text(HostQuery::kRequest);
  RemoveHeaderLine(request);
  if (const std::int32_t failure = EnsureSession(response)) return failure;
  const std::int32_t number = Submit(request, response, isHostQuery);
  history.Write(request, response, number == kParseError);
  ExtendIdleClose();
  return number;
}

std::int32_t RequestHandler::SelectCompanyFile(TextView request, Text& response) {
  Text name(CompanyFileIn(request));
  if (UpperCase(name) == u"DEFAULT") {
    Text failure = ReadDefaultCompanyFile(oSettings.sIniFile, name);
    if (!failure.empty()) return Refuse(ErrorNumber::kPathFileAccess, std::move(failure), response);
  }
  // The name is sent to every client that asks for it, and one such character ends a frame.
  if (std::any_of(name.begin(), name.end(), IsControl)) {
    return Refuse(ErrorNumber::kBadFileName, u"The company file name holds a control character",
                  response);
  }
  oSettings.sQBFileName = std::move(name);
  // Without a session the name is a sentence that differs, and there is nothing to close.
  if (oSession.CompanyFileName() != oSettings.sQBFileName) oSession.EndSessionAndCloseConnection();
  // Kept: the name stands as it is, not escaped; clients compare it.
  response =
      u"<QBXML><QBXMLMsgsRs><QBFileNameRs requestID=\"99\" statusCode=\"0\" "
      u"statusSeverity=\"Info\" statusMessage=\"Status OK\"><QBFileNameRet><QBFileName>" +
      oSettings.sQBFileName + u"</QBFileName></QBFileNameRet></QBFileNameRs></QBXMLMsgsRs></QBXML>";
  ExtendIdleClose();
  return 0;
}

// The company file stays the one that it was.
std::int32_t RequestHandler::Refuse(std::int32_t number, Text reason, Text& response) {
  oTrace.AddStatus(FailureWith(number, reason) + WhatToDo(CureText(CureOf::kGateway, number)));
  response = std::move(reason);
  return number;
}

std::int32_t RequestHandler::CloseOnRequest(Text& response) {
  CloseQuickBooks();
  response = kCloseReply;
  return 0;
}

std::int32_t RequestHandler::Submit(Text& request, Text& response, bool isHostQuery) {
  EnsureXmlProlog(request);
  const std::int32_t number = oSession.ProcessRequest(request, response);
  if (number != 0) {
    RequestFailed(number, request, response);
    return number;
  }
  const TextView trimmed = TrimBlanks(response);
  if (trimmed.size() != response.size()) response = Text(trimmed);
  if (isHostQuery) AddProduct(response);
  return 0;
}

std::int32_t RequestHandler::EnsureSession(Text& response) {
  if (oSession.IsConnected()) return 0;
  ExtendIdleClose();
  std::int32_t errorNumber = 0;
  const std::int32_t failure = oSession.OpenConnectionAndBeginSession(
      u"ostrel", u"Ostrel", oSettings.sQBFileName, 0, errorNumber);
  if (failure != 0) {
    OpenFailed(errorNumber, response);
    return errorNumber;
  }
  Text reply;
  if (!oHostQuery.Run(reply, false)) oTrace.AddStatus(u"Host query failed: " + reply);
  return 0;
}

void RequestHandler::OpenFailed(std::int32_t number, Text& response) {
  oTrace.AddStatus(FailureLine(number) + WhatToDo(CureText(CureOf::kGateway, number)));
  response =
      u"You must Test the Quickbooks Connection from the Ostrel server before you can interact "
      u"with the Quickbooks data.";
  oTrace.AddStatus(u"Settings incomplete: run 'Test Connection'.");
  oSession.EndSessionAndCloseConnection();
}

void RequestHandler::RequestFailed(std::int32_t number, TextView request, Text& response) {
  // Taken before the report is made, which may fail with an error of its own.
  const Text failure = FailureLine(number);
  TextView cure = CureText(CureOf::kGateway, number);
  if (oSettings.bValidateXML && number == kParseError) {
    oSession.XMLValidate(request, response);
    cure = HoldsPrologOnly(request) ? EmptyRequestCure() : CureText(number, response);
  }
  oTrace.AddStatus(failure + WhatToDo(cure));
  if (IsSessionLost(number)) oSession.EndSessionAndCloseConnection();
}

// Company file and product stand in front of every product name of the host query's reply.
void RequestHandler::AddProduct(Text& response) {
  const Text name =
      oSettings.sQBFileName.empty() ? oSession.CompanyFileName() : oSettings.sQBFileName;
  const Text product = u"<QBFileName>" + name + u"</QBFileName><OstrelServer><ProductCode>" +
                       ToText(std::int64_t{oHostQuery.iQBProductCode}) +
                       u"</ProductCode><ProductYear>" +
                       ToText(std::int64_t{oHostQuery.iQBProductYear}) +
                       u"</ProductYear></OstrelServer><ProductName>";
  response = ReplaceAll(response, u"<ProductName>", product);
}

// The client gets a number; people get the sentence, or what QuickBooks said.
Text RequestHandler::FailureLine(std::int32_t number) const {
  const TextView sentence = TextFor(Raw(number)).value_or(TextView(oSession.sLastError));
  return FailureWith(number, sentence);
}

void RequestHandler::ExtendIdleClose() {
  oIdleClose.Extend(oClock.SteadyNow(), oSettings.iDisconnectTimeout);
}

}  // namespace ostrel
