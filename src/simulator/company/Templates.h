// The forms that QuickBooks itself brings to every company. They are the same everywhere and cannot
// be changed, so that no file holds them.
#pragma once

#include "simulator/company/Company.h"

namespace ostrel::simulator {

/// Gives the company QuickBooks' own templates, but for those whose names it uses itself.
void AddTemplates(Company& company);

}  // namespace ostrel::simulator
