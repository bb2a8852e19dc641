#pragma once

#include <gmock/gmock.h>

namespace ostrel {

/// For texts and bytes; testing::StartsWith knows bytes only.
MATCHER_P(BeginsWith, start, "") { return arg.starts_with(start); }

}  // namespace ostrel
