// Words from which names, addresses and goods are put together.
#pragma once

#include <span>
#include <string_view>

namespace ostrel::simulator::words {

struct City {
  std::string_view name, state, postalCode, areaCode;
};

/// Something on a shelf: what it costs in cents, and the forms in which it comes.
struct Goods {
  std::string_view name;
  int cost;
  std::span<const std::string_view> forms;
};

struct Account {
  std::string_view number, name, type, text;
};

std::span<const std::string_view> FirstNames();
std::span<const std::string_view> LastNames();
std::span<const std::string_view> Streets();
std::span<const City> Cities();
/// "Harbor", "Alder Street": what businesses are called after.
std::span<const std::string_view> Places();
/// "Landscaping", "Veterinary Clinic".
std::span<const std::string_view> Trades();
/// "Fasteners", "Lumber": what vendors deal in.
std::span<const std::string_view> Wares();
std::span<const std::string_view> Jobs();
std::span<const Goods> Shelves();
std::span<const Account> Accounts();

}  // namespace ostrel::simulator::words
