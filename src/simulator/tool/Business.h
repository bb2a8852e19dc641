// Makes up a small business: a hardware store with its accounts, people, goods and a year of sales.
// What it sells and is paid goes through the engine's own messages, so that all sums are right.
#pragma once

#include <cstdint>
#include <string>

namespace ostrel::simulator {

struct BusinessSize {
  std::uint64_t customers = 24;
  std::uint64_t vendors = 8;
  std::uint64_t items = 20;
  std::uint64_t invoices = 40;
  std::uint64_t seed = 1;
};

/// The company file. The same size and seed make the same bytes on every system.
std::string MakeBusiness(const BusinessSize& size);

}  // namespace ostrel::simulator
