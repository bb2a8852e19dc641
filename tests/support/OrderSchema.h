// A small schema in a folder of the test's own, for tests of validation.
#pragma once

#include <string_view>

#include "tests/support/ScratchFolder.h"

namespace ostrel {

class OrderSchema {
 public:
  OrderSchema() { oFolder.Write(kName, kSchema); }

  Text Path() const { return oFolder.Path(kName); }
  const ScratchFolder& Folder() const { return oFolder; }

 private:
  static constexpr TextView kName = u"orders.xsd";
  static constexpr std::string_view kSchema = R"(<?xml version="1.0"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="Order">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="Name" type="xs:string"/>
        <xs:element name="Count" type="xs:positiveInteger" maxOccurs="unbounded"/>
      </xs:sequence>
    </xs:complexType>
  </xs:element>
</xs:schema>
)";

  ScratchFolder oFolder;
};

}  // namespace ostrel
