// The tables are the one source of causes and cures: tools/cures makes the tables of the manual and
// the databases' OSTREL.CURE of them, and reads them as they stand here: one row a number, texts as
// literals.
#include "util/Cures.h"

#include <algorithm>
#include <span>

namespace ostrel {
namespace {

constexpr std::int32_t kParseErrorNumber = 1024;

constexpr Cure kGatewayCures[] = {
    {-1, Carried::kNo, u"There is no connection to the gateway.",
     u"Is the gateway running, are host and port right, does a firewall stand between?"},
    {-2, Carried::kMaybe, u"The connection ended before the response.",
     u"Is the gateway still running? Its status lines say why it ended a connection."},
    {-3, Carried::kMaybe, u"There was no response in time.",
     u"Look at QuickBooks' window: it may be waiting for a person. Then at the gateway's status "
     u"lines."},
    {-4, Carried::kNo, u"The request was not sent.",
     u"Correct the request: empty, character 31 or a mark in it, or another session keeps the "
     u"lock."},
    {-5, Carried::kMaybe, u"The response is not the gateway's.",
     u"Another program listens at this port: correct the port, or SocketPort in the settings."},
    {-6, Carried::kMaybe, u"A file of the exchange cannot be written, renamed or read.",
     u"Are the folders those of the settings, does this user have the right to write in both?"},
    {2, Carried::kMaybe, u"QuickBooks was disconnected, or Windows could not carry the call.",
     u"Look at the gateway's status lines for the number, start QuickBooks by hand, and send the "
     u"request again."},
    {3, Carried::kNo, u"QuickBooks' request processor is not installed.",
     u"Install QuickBooks on the gateway's machine, or repair its installation."},
    {7, Carried::kMaybe, u"There is not enough memory in the gateway.",
     u"Ask for less at once: MaxReturned, or an iterator."},
    {14, Carried::kNo, u"The request is longer than 268,435,456 characters.", u"Send it in parts."},
    {51, Carried::kMaybe, u"A defect of the gateway.",
     u"Send the gateway's status lines to its makers."},
    {52, Carried::kNo, u"The name of the company file holds a control character.",
     u"Correct the name in QBFILENAME:, or FileName in the settings."},
    {57, Carried::kYes, u"The request was carried out, but its response could not be written.",
     u"Make room in the response folder. Query before you send the request again."},
    {58, Carried::kMaybe, u"The gateway was killed while the request was in work.",
     u"Query before you send the request again: it may have been carried out."},
    {75, Carried::kNo, u"The company file of the settings cannot be told.",
     u"Close the settings file in other programs, and keep FileName within 99 characters."},
    {99, Carried::kNo, u"QuickBooks is still opening the company file.",
     u"Wait: the response follows."},
    {340, Carried::kNo, u"QuickBooks' request processor is not registered with Windows.",
     u"Repair the installation of QuickBooks on the gateway's machine."},
    {499, Carried::kNo, u"QuickBooks' request processor is not registered with Windows.",
     u"Repair the installation of QuickBooks on the gateway's machine."},
    {509, Carried::kMaybe, u"The connection to QuickBooks is gone.",
     u"Send the request again: the gateway opens QuickBooks anew."},
    {1024, Carried::kNo, u"QuickBooks cannot parse the request.",
     u"Correct the request: the report names the place. No text: look at the version line, and for "
     u"an element newer than it."},
    {1025, Carried::kMaybe, u"QuickBooks cannot be reached.",
     u"Send the request again. If the error stays, look at QuickBooks' window for a dialog box."},
    {1026, Carried::kMaybe, u"An unexpected error in QuickBooks.",
     u"Look into qbsdklog.txt on QuickBooks' machine, and query before you send the request "
     u"again."},
    {1027, Carried::kNo, u"The company file cannot be opened.",
     u"Is the path in QBFILENAME: or FileName right, seen from the gateway's machine, and may its "
     u"user read the file?"},
    {1028, Carried::kNo, u"This QuickBooks does not understand qbXML.",
     u"Update QuickBooks: Pro, Premier or Enterprise, 2002 or later."},
    {1029, Carried::kNo, u"QuickBooks' qbXML components are not installed.",
     u"Repair the installation of QuickBooks."},
    {1030, Carried::kNo, u"The company file belongs to a newer version of QuickBooks.",
     u"Open the company file by hand in the QuickBooks that is installed here."},
    {1031, Carried::kNo, u"The installation of QuickBooks is incomplete.",
     u"Repair the installation of QuickBooks."},
    {1032, Carried::kNo, u"QuickBooks did not start.",
     u"Start QuickBooks by hand, log in, and send the request again."},
    {1033, Carried::kNo, u"This version of QuickBooks cannot work with the company file.",
     u"Open the company file by hand in the QuickBooks that is installed here."},
    {1034, Carried::kNo, u"Another company file is open in QuickBooks.",
     u"Close it in QuickBooks, or choose the one that is open with QBFILENAME:"},
    {1035, Carried::kNo, u"QuickBooks does not tell which company file is open.",
     u"Open the company file in QuickBooks, and send the request again."},
    {1036, Carried::kNo, u"The session with QuickBooks has ended.",
     u"Send the request again: the gateway opens QuickBooks anew."},
    {1037, Carried::kNo, u"The session with QuickBooks has ended.",
     u"Send the request again: the gateway opens QuickBooks anew."},
    {1038, Carried::kMaybe, u"QuickBooks has not enough memory.",
     u"Ask for less at once: MaxReturned, or an iterator."},
    {1039, Carried::kNo, u"The connection to QuickBooks has ended.",
     u"Send the request again: the gateway opens QuickBooks anew."},
    {1040, Carried::kNo, u"The company file is open in another mode.",
     u"Let the others leave the company file, or change the mode in QuickBooks."},
    {1041, Carried::kNo, u"The last session with QuickBooks has not ended.",
     u"Send CLOSEQB:, then the request again."},
    {1042, Carried::kNo, u"The last connection to QuickBooks has not ended.",
     u"Send CLOSEQB:, then the request again."},
    {1043, Carried::kNo, u"QuickBooks does not know onError=\"rollbackOnError\".",
     u"Write stopOnError or continueOnError."},
    {1044, Carried::kNo, u"A dialog box is open in QuickBooks.",
     u"Close the dialog box in QuickBooks, and send the request again."},
    {1045, Carried::kNo, u"QuickBooks was not told the name of the application.",
     u"Send the gateway's status lines to its makers."},
    {1046, Carried::kNo, u"No company file is named, and none is open in QuickBooks.",
     u"Name one with QBFILENAME: or FileName in the settings, or open one in QuickBooks."},
    {1047, Carried::kNo, u"No company file is named, and none is open in QuickBooks.",
     u"Name one with QBFILENAME: or FileName in the settings, or open one in QuickBooks."},
    {1048, Carried::kNo, u"The gateway has never worked in this company file before.",
     u"Let the QuickBooks administrator log in, run the connection test, and allow access when "
     u"QuickBooks asks."},
    {1049, Carried::kNo, u"QuickBooks does not accept the certificate.",
     u"Let the QuickBooks administrator remove Ostrel in Edit, Preferences, Integrated "
     u"Applications, and run the connection test again."},
    {1050, Carried::kNo, u"QuickBooks does not let the gateway in.",
     u"Let the QuickBooks administrator allow Ostrel in Edit, Preferences, Integrated "
     u"Applications, Company Preferences."},
    {1051, Carried::kNo, u"The company file is locked for a moment.",
     u"Send the request again after a minute."},
    {1052, Carried::kMaybe, u"An internal error in QuickBooks.",
     u"Query before you send the request again. If the error stays, verify the data in QuickBooks: "
     u"File, Utilities."},
    {1053, Carried::kNo, u"The gateway may not log in by itself.",
     u"Let the QuickBooks administrator allow Ostrel to log in automatically: Edit, Preferences, "
     u"Integrated Applications, Properties."},
    {1054, Carried::kNo, u"The certificate has expired.",
     u"Log in to QuickBooks, run the connection test, and choose to allow always."},
    {1055, Carried::kNo, u"This is QuickBooks Basic, which takes no requests.",
     u"Install QuickBooks Pro, Premier or Enterprise."},
    {1056, Carried::kNo, u"The QuickBooks user has denied access.",
     u"Run the connection test again, and allow access in QuickBooks when it asks."},
    {1057, Carried::kMaybe, u"QuickBooks refused the request with a text of its own.",
     u"Read QuickBooks' text in the gateway's status lines."},
    {1058, Carried::kNo, u"The company file is shared with another application.",
     u"End the other application, or let everyone use multi-user mode."},
    {1059, Carried::kNo, u"QuickBooks does not know this version of qbXML.",
     u"Write a lower version, for instance <?qbxml version=\"3.0\"?>"},
    {1060, Carried::kNo, u"QuickBooks has not finished starting.",
     u"Wait a minute, and send the request again."},
    {1061, Carried::kNo, u"A parameter of the call is invalid.",
     u"Send the gateway's status lines to its makers."},
    {1062, Carried::kNo, u"Scripts may not call QuickBooks.",
     u"Send the gateway's status lines to its makers."},
    {1063, Carried::kNo, u"QuickBooks is not registered with its makers.",
     u"Register QuickBooks: Help, Register."},
    {1064, Carried::kNo, u"QuickBooks' request processor does not know this version of qbXML.",
     u"Write a lower version, for instance <?qbxml version=\"3.0\"?>"},
    {1065, Carried::kNo, u"These messages cannot be sent this way.",
     u"Send messages of qbXML for QuickBooks, not for another product."},
    {1066, Carried::kNo, u"QuickBooks does not take this call from another machine.",
     u"Run the gateway on QuickBooks' machine."},
    {1067, Carried::kNo, u"QuickBooks does not have this interface.", u"Update QuickBooks."},
    {1068, Carried::kNo, u"The certificate has been revoked.",
     u"Send the gateway's status lines to its makers."},
    {1069, Carried::kNo, u"QuickBooks did not finish opening the company file.",
     u"Start QuickBooks by hand, log in, and send the request again."},
    {1070, Carried::kNo, u"A call came at the wrong time in a session.",
     u"Send CLOSEQB:, then the request again."},
    {1071, Carried::kNo, u"The type of connection is not known.", u"Update QuickBooks."},
    {1072, Carried::kMaybe, u"An error that QuickBooks' manual does not name.",
     u"Look at the gateway's status lines for QuickBooks' own text."},
    {196613, Carried::kNo, u"Windows does not let the gateway start QuickBooks.",
     u"Run the gateway as the user who is logged in and works with QuickBooks, neither one of them "
     u"as administrator."},
    {196622, Carried::kMaybe, u"There is not enough memory on QuickBooks' machine.",
     u"End other programs there, and ask for less at once."},
    {198330, Carried::kMaybe, u"QuickBooks has ended or died.",
     u"Start QuickBooks by hand, and query before you send the request again."},
    {198334, Carried::kMaybe, u"QuickBooks died while it worked.",
     u"Start QuickBooks by hand, and query before you send the request again."},
    {198335, Carried::kNo, u"QuickBooks died before it took the request.",
     u"Start QuickBooks by hand, and send the request again."},
    {262145, Carried::kNo, u"QuickBooks could not be started.",
     u"Start QuickBooks by hand, and send the request again."},
    {262149, Carried::kNo, u"QuickBooks could not be started: it runs as another user.",
     u"Run the gateway as the user who is logged in and works with QuickBooks, neither one of them "
     u"as administrator."},
};

constexpr Cure kSocketCures[] = {
    {10004, Carried::kNo, u"The wait was interrupted.", u"Try again."},
    {10013, Carried::kNo, u"The system does not allow it.",
     u"Another port above 1024; does a firewall or another program keep this one?"},
    {10024, Carried::kNo, u"Too many connections are open.",
     u"Let programs close their connections."},
    {10048, Carried::kNo, u"Another program listens at this port.",
     u"End the other program, or choose another SocketPort."},
    {10049, Carried::kNo, u"This address is not one of this machine.", u"Correct the address."},
    {10050, Carried::kNo, u"The network is down.", u"Look at the network."},
    {10051, Carried::kNo, u"The network cannot be reached.",
     u"Look at the network and at the host's name."},
    {10053, Carried::kNo, u"The connection was broken off on this machine.",
     u"Try again; look at the network and at security programs."},
    {10054, Carried::kNo, u"The other side has broken off the connection.",
     u"Is the gateway still running? Look at its status lines."},
    {10055, Carried::kNo, u"The system has no room for more connections.", u"End other programs."},
    {10060, Carried::kNo, u"The host does not respond.",
     u"Is the host right and switched on, does a firewall stand between?"},
    {10061, Carried::kNo, u"Nothing listens at this port.",
     u"Start the gateway; is the port that of the line \"Listenning on Socket\"?"},
    {10064, Carried::kNo, u"The host is down.", u"Switch the host on."},
    {10065, Carried::kNo, u"There is no way to the host.",
     u"Look at the network and at the host's name."},
    {11001, Carried::kNo, u"There is no such host.",
     u"Correct the host's name, or write its address."},
    {11002, Carried::kNo, u"The host's name cannot be looked up now.",
     u"Try again, or write the host's address."},
    {11003, Carried::kNo, u"The host's name cannot be looked up.", u"Write the host's address."},
    {11004, Carried::kNo, u"The host's name has no address.",
     u"Correct the host's name, or write its address."},
};

constexpr Cure kFileCures[] = {
    {2, Carried::kNo, u"The file is not there.", u"Correct the path."},
    {3, Carried::kNo, u"The folder is not there.", u"Correct the path, or create the folder."},
    {5, Carried::kNo, u"Access is denied.",
     u"Let the program's user read and write there; is the file marked read-only?"},
    {19, Carried::kNo, u"The disk is write-protected.", u"Choose another folder."},
    {21, Carried::kNo, u"The drive is not ready.", u"Look at the drive."},
    {32, Carried::kNo, u"Another program has the file open.", u"Close it there."},
    {33, Carried::kNo, u"Another program has locked the file.", u"Close it there."},
    {39, Carried::kNo, u"The disk is full.", u"Make room."},
    {53, Carried::kNo, u"The network folder cannot be found.",
     u"Look at the network and at the other machine."},
    {64, Carried::kNo, u"The network folder is gone.",
     u"Look at the network and at the other machine."},
    {67, Carried::kNo, u"The network folder has another name.", u"Correct the path."},
    {80, Carried::kNo, u"The file is there already.", u"Delete it, or choose another name."},
    {112, Carried::kNo, u"The disk is full.", u"Make room."},
    {123, Carried::kNo, u"This cannot be the name of a file.", u"Correct the path."},
    {206, Carried::kNo, u"The path is too long.", u"Choose a shorter one."},
    {1117, Carried::kNo, u"The disk could not be read or written.", u"Check the disk."},
};

// Of 1024, by its report: none, or one that finds no element where one should be.
constexpr TextView kNoReport =
    u"The form of the request is right: is the line <?qbxml version=...?> there, and is an element "
    u"newer than that version?";
constexpr TextView kNothingLeft =
    u"Nothing was left of the request, or something stands behind its end: a first line that is no "
    u"<?xml or <?qbxml is taken off.";
// As libxml2 and MSXML put it.
constexpr TextView kNothingLeftReports[] = {u"Extra content at the end of the document",
                                            u"Document is empty", u"top level element"};

std::span<const Cure> Cures(CureOf of) {
  switch (of) {
    case CureOf::kGateway:
      return kGatewayCures;
    case CureOf::kSocket:
      return kSocketCures;
    case CureOf::kFile:
      return kFileCures;
  }
  return {};
}

}  // namespace

const Cure* FindCure(CureOf of, std::int32_t number) {
  const auto cures = Cures(of);
  const auto found = std::ranges::find(cures, number, &Cure::number);
  return found == cures.end() ? nullptr : &*found;
}

TextView CureText(CureOf of, std::int32_t number) {
  const Cure* found = FindCure(of, number);
  return found == nullptr ? TextView() : found->cure;
}

TextView CureText(std::int32_t gatewayNumber, TextView text) {
  if (gatewayNumber != kParseErrorNumber) return CureText(CureOf::kGateway, gatewayNumber);
  if (text.find_first_not_of(u" \r\n") == TextView::npos) return kNoReport;
  for (const TextView report : kNothingLeftReports) {
    if (Contains(text, report)) return kNothingLeft;
  }
  return CureText(CureOf::kGateway, gatewayNumber);
}

TextView EmptyRequestCure() { return kNothingLeft; }

Text WhatToDo(TextView cure) { return cure.empty() ? Text() : u" What to do: " + Text(cure); }

}  // namespace ostrel
