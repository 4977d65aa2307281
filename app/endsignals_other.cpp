// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/endsignals.h"

EndSignals::EndSignals() = default;
EndSignals::~EndSignals() = default;
