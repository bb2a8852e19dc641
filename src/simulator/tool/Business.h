// Makes up a small business: a hardware store with its accounts, people, goods and a year of sales.
// Its sales and payments go through the engine's own messages, so that all totals are right.
#pragma once

#include <cstddef>
#include <string>

namespace ostrel::simulator {

struct BusinessSize {
  std::size_t customers = 24;
  std::size_t vendors = 8;
  std::size_t items = 20;
  std::size_t invoices = 40;
  std::size_t seed = 1;
};

/// The company file. The same size and seed make the same bytes on every system.
std::string MakeBusiness(const BusinessSize& size);

}  // namespace ostrel::simulator
