#include "Books.h"
#include "tests/support/WorkedConversation.h"

namespace ostrel {
namespace {

TEST(WorkedConversation, GoesAsItDoesWithQuickBooks) {
  Books books;

  WorkedConversation([&](const std::string& request) { return books.Send(request); }).Hold();
}

}  // namespace
}  // namespace ostrel
