// The definitions of all that qbXML messages hold, as text. Grammar.h reads them. One definition
// begins at the start of a line and goes on in the indented lines behind it:
//
//   Name = content            what stands in the element Name
//   %Name = content           a part that several definitions share; %Name puts it in place
//   &Name = Word Word         words that a value may be
//
// A content is a sequence of elements. It is followed by | and another one where only one of them
// may stand; ( ) makes a group.
//
//   Child                     exactly once; what stands in it has a definition of its name
//   Child? Child* Child+      at most once, any number, at least once; Child{0,8} as often as that
//   Child:str31               a value: str31 (at most 31 characters), str, bool, count (an integer
//                             above 0), int, amount, price, percent, quantity, float, date,
//                             datetime, interval, id, guid, or macro (an id that a macro may stand
//                             for); =A|B one of these words, &Name one of the words of that name
//   Child^12.0                since that version of qbXML
//   @name                     an attribute of the defined element
//
// There is one deliberate difference from the public facts: ValueAdjustment may hold a value, which
// they forbid with a count of zero while they name its two forms.
#pragma once

#include <string_view>

namespace ostrel::simulator {

std::string_view CommonDefinitions();
std::string_view ListDefinitions();
std::string_view TransactionDefinitions();
/// One for each message: "InvoiceAddRq".
std::string_view MessageDefinitions();

}  // namespace ostrel::simulator
