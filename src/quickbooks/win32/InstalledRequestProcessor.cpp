#include "quickbooks/InstalledRequestProcessor.h"

#include "quickbooks/win32/ComRequestProcessor.h"
#include "quickbooks/win32/RequestProcessorClass.h"

namespace ostrel {

std::unique_ptr<RequestProcessor> MakeInstalledRequestProcessor() {
  return std::make_unique<ComRequestProcessor>(kRequestProcessorClass, kRequestProcessorInterface);
}

}  // namespace ostrel
