#include "tests/support/WorkedConversation.h"
#include "tests/unit/simulator/Books.h"

namespace ostrel {
namespace {

TEST(WorkedConversation, GoesAsItDoesWithQuickBooks) {
  Books books;

  WorkedConversation([&](const std::string& request) { return books.Send(request); }).Hold();
}

}  // namespace
}  // namespace ostrel
