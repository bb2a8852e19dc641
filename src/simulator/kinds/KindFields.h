// The fields of a kind of object, from the definitions of its Ret, Add and Mod.
#pragma once

#include <string_view>
#include <vector>

#include "simulator/kinds/Fields.h"

namespace ostrel::simulator {

std::vector<Field> FieldsOf(std::string_view kind);

}  // namespace ostrel::simulator
