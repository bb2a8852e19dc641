// Short names for the rows of the tables of kinds.
#pragma once

#include <array>

#include "simulator/kinds/Fields.h"

namespace ostrel::simulator::shape {

using Words = std::span<const std::string_view>;

constexpr Field Line(std::string_view name, std::size_t maxLength) {
  return {.name = name, .maxLength = maxLength};
}
constexpr Field Choice(std::string_view name, Words values, std::string_view otherwise = {}) {
  return {.name = name, .values = values, .otherwise = otherwise};
}
constexpr Field Of(FieldType type, std::string_view name, std::string_view otherwise = {}) {
  return {.name = name, .type = type, .otherwise = otherwise};
}
constexpr Field Flag(std::string_view name, std::string_view otherwise = {}) {
  return Of(FieldType::kBoolean, name, otherwise);
}
constexpr Field Integer(std::string_view name, std::string_view otherwise = {}) {
  return Of(FieldType::kInteger, name, otherwise);
}
constexpr Field Amount(std::string_view name, std::string_view otherwise = {}) {
  return Of(FieldType::kAmount, name, otherwise);
}
constexpr Field Price(std::string_view name) { return Of(FieldType::kPrice, name); }
constexpr Field Percent(std::string_view name) { return Of(FieldType::kPercent, name); }
constexpr Field Quantity(std::string_view name, std::string_view otherwise = {}) {
  return Of(FieldType::kQuantity, name, otherwise);
}
constexpr Field Date(std::string_view name) { return Of(FieldType::kDate, name); }
constexpr Field Ref(std::string_view name, std::string_view refers) {
  return {.name = name, .type = FieldType::kReference, .refers = refers};
}
/// A reference to an account of one of the types; when none is given, the company's first of this
/// type.
constexpr Field AccountRef(std::string_view name, Words types = {},
                           std::string_view otherwise = {}) {
  return {.name = name,
          .type = FieldType::kReference,
          .values = types,
          .refers = "Account",
          .otherwise = otherwise};
}
constexpr Field Group(std::string_view name, std::span<const Field> children) {
  return {.name = name, .type = FieldType::kGroup, .children = children};
}
/// "InvoiceLine" for InvoiceLineAdd, InvoiceLineMod and InvoiceLineRet.
constexpr Field Lines(std::string_view name, std::span<const Field> children, int mixed = 0) {
  return {.name = name,
          .type = FieldType::kLine,
          .repeated = true,
          .suffixed = true,
          .mixed = mixed,
          .children = children};
}

constexpr Field In(Use uses, Field field) {
  field.uses = uses;
  return field;
}
/// Only in what is returned.
constexpr Field Shown(Field field) { return In(kRet, field); }
/// Required in an AddRq; elsewhere it may be left out.
constexpr Field Needed(Field field) {
  field.required = kAdd;
  return field;
}
constexpr Field Needed(Use use, Field field) {
  field.required = use;
  return field;
}
constexpr Field Since(int version, Field field) {
  field.since = version;
  return field;
}
/// Excluded by another field of the same number.
constexpr Field Either(int number, Field field) {
  field.either = number;
  return field;
}
constexpr Field From(std::string_view reference, Words paths, Field field) {
  field.source = {reference, paths};
  return field;
}
constexpr Field Many(Field field) {
  field.repeated = true;
  return field;
}

template <class... Fields>
constexpr std::array<Field, sizeof...(Fields)> Table(Fields... fields) {
  return {fields...};
}

/// The fields of a list object, behind those that all have.
template <class... Fields>
constexpr auto ListObject(Fields... fields) {
  return Table(Needed(kMod, In(kMod | kRet, Of(FieldType::kId, "ListID"))),
               Shown(Line("TimeCreated", 0)), Shown(Line("TimeModified", 0)),
               Needed(kMod, In(kMod | kRet, Line("EditSequence", 16))), fields...);
}

template <class... Fields>
constexpr auto Transaction(Fields... fields) {
  return Table(Needed(kMod, In(kMod | kRet, Of(FieldType::kId, "TxnID"))),
               Shown(Line("TimeCreated", 0)), Shown(Line("TimeModified", 0)),
               Needed(kMod, In(kMod | kRet, Line("EditSequence", 16))), Shown(Line("TxnNumber", 0)),
               fields...);
}

template <class... Fields>
constexpr auto LineObject(Fields... fields) {
  return Table(Needed(kMod, In(kMod | kRet, Of(FieldType::kId, "TxnLineID"))), fields...);
}

}  // namespace ostrel::simulator::shape
