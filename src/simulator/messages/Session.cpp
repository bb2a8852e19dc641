#include "simulator/messages/Session.h"

#include <algorithm>
#include <cstdio>

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxIterators = 100;

}  // namespace

Iterator& Session::Keep(Iterator iterator) {
  if (oIterators.size() == kMaxIterators) oIterators.pop_front();
  constexpr std::size_t kReplaced = 8;  // digits of the ticket before its closing brace
  char number[16];
  std::snprintf(number, sizeof number, "%08x}", ++lCount);
  iterator.id = sTicket.substr(0, sTicket.size() - std::min(sTicket.size(), kReplaced + 1));
  iterator.id += number;
  return oIterators.emplace_back(std::move(iterator));
}

Iterator* Session::Find(std::string_view id, std::string_view query) {
  const auto found = std::ranges::find(oIterators, id, &Iterator::id);
  return found != oIterators.end() && found->query == query ? &*found : nullptr;
}

void Session::End(const Iterator& iterator) {
  std::erase_if(oIterators, [&](const Iterator& other) { return &other == &iterator; });
}

}  // namespace ostrel::simulator
