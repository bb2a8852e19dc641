#include "platform/InstalledRequestProcessor.h"

#include "platform/win32/ComRequestProcessor.h"
#include "platform/win32/RequestProcessorClass.h"

namespace ostrel::platform {

std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor() {
  return std::make_unique<ComRequestProcessor>(kRequestProcessorClass, kRequestProcessorInterface);
}

}  // namespace ostrel::platform
