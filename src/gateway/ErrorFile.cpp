#include "gateway/ErrorFile.h"

#include <utility>

namespace ostrel {

bool WriteErrorFile(WholeFile& file, TextView errorNumber, TextView message) {
  Text content = u"ERROR ";
  content.append(errorNumber).append(kCrLf).append(message).append(kCrLf);
  return file.Write(std::move(content));
}

}  // namespace ostrel
