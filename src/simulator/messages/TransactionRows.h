// What a query over transactions of all kinds returns of each: a row for the whole of it and one
// for each line that posts to an account.
#pragma once

#include <vector>

#include "simulator/company/Objects.h"
#include "simulator/messages/Message.h"

namespace ostrel::simulator {

/// The kinds that such a query knows.
KindList QueriedTransactionKinds();
/// "TransactionRet" elements, as many as the query's detail level asks for.
std::vector<Element> TransactionRows(const Call& call, const Target& transaction);

}  // namespace ostrel::simulator
