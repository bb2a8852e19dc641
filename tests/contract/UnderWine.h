// Whether the system is Wine, for the few things that it does differently from Windows.
#pragma once

namespace ostrel::platform {

bool UnderWine();

}  // namespace ostrel::platform
