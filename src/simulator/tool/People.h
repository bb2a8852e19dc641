// Makes up people and businesses with their addresses, each under a name of its own.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "simulator/xml/Element.h"

namespace ostrel::simulator {

/// The same numbers for a seed on every system.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : oNumbers(seed) {}

  /// A number from 0 to count - 1.
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(oNumbers() % count); }
  int Between(int least, int most) {
    return least + static_cast<int>(Below(static_cast<std::size_t>(most - least) + 1));
  }
  bool InHundred(int cases) { return Between(1, 100) <= cases; }
  template <class Thing>
  const Thing& Of(std::span<const Thing> things) {
    return things[Below(things.size())];
  }

 private:
  std::mt19937_64 oNumbers;
};

class People {
 public:
  explicit People(Chance& chance) : oChance(chance) {}

  struct Person {
    std::string first, last;
    std::string Whole() const { return first + ' ' + last; }
  };
  Person NewPerson();
  /// "Harbor Landscaping"
  std::string NewFirm(std::span<const std::string_view> trades);
  /// The name itself when it is the first of it, or one with a number behind it.
  std::string Unique(const std::string& name);

  /// BillAddress or another, with who is to read it in its first line.
  Element NewAddress(std::string_view field, std::string_view firstLine);
  /// A telephone number in the place of the last address.
  std::string NewPhone();
  /// "ruth@harborlandscaping.example.com"
  static std::string MailOf(std::string_view name, std::string_view firm);

 private:
  Chance& oChance;
  std::map<std::string, int> oNames;  // how often each has been given
  std::string sAreaCode = "707";
};

}  // namespace ostrel::simulator
