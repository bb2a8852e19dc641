// A schema (XSD) of the requests that the stand-in understands, made from the same tables by which
// it checks them. samples/qbxmlops30.xsd is what this returns: the gateway reports with it where a
// request is wrong.
#pragma once

#include <string>

namespace ostrel::simulator {

/// Every request that is not refused as one that cannot be parsed is valid. A schema knows neither
/// versions of qbXML nor what an iterator needs: a valid request may be refused for these.
std::string QbxmlSchema();

}  // namespace ostrel::simulator
