#include "simulator/tool/People.h"

#include <cstdio>

#include "simulator/tool/WordLists.h"

namespace ostrel::simulator {
namespace {

// Letters in lower case, nothing else.
std::string Letters(std::string_view name) {
  std::string letters;
  for (const char c : name) {
    if (c >= 'a' && c <= 'z') letters += c;
    if (c >= 'A' && c <= 'Z') letters += static_cast<char>(c - 'A' + 'a');
  }
  return letters;
}

}  // namespace

People::Person People::NewPerson() {
  std::string first(oChance.Of(words::FirstNames()));
  return {std::move(first), std::string(oChance.Of(words::LastNames()))};
}

// Named after a place or after its founder.
std::string People::NewFirm(std::span<const std::string_view> trades) {
  const bool byPlace = oChance.InHundred(50);
  std::string name(oChance.Of(byPlace ? words::Places() : words::LastNames()));
  return name.append(" ").append(oChance.Of(trades));
}

std::string People::Unique(const std::string& name) {
  const int count = ++oNames[name];
  return count == 1 ? name : Unique(name + ' ' + std::to_string(count));
}

Element People::NewAddress(std::string_view field, std::string_view firstLine) {
  const int number = oChance.Between(2, 5900);
  const std::string_view street = oChance.Of(words::Streets());
  const words::City& city = oChance.Of(words::Cities());
  sAreaCode = city.areaCode;
  Element address{.name = std::string(field)};
  address.Add("Addr1", firstLine);
  address.Add("Addr2", std::to_string(number).append(" ").append(street));
  address.Add("City", city.name);
  address.Add("State", city.state);
  address.Add("PostalCode", city.postalCode);
  return address;
}

// 555-0100 to 555-0199 belong to nobody.
std::string People::NewPhone() {
  char number[16];
  std::snprintf(number, sizeof number, "-555-%04d", oChance.Between(100, 199));
  return sAreaCode + number;
}

std::string People::MailOf(std::string_view name, std::string_view firm) {
  const std::string host = firm.empty() ? std::string() : Letters(firm) + '.';
  return Letters(name.substr(0, name.find(' '))) + '@' + host + "example.com";
}

}  // namespace ostrel::simulator
