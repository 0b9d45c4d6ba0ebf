// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A facade source is the target's declaration and one call: the ordinary arguments go on by address, followed
// by one hidden length of 1 per option character.
#include "TOVBlaModule.h"

#include "real.h"

#include <cstddef>
