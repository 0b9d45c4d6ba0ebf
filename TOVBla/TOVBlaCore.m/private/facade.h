// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A facade source is the target's declaration, our own with a hidden length for each option character, and
// one call: the ordinary arguments go on by address, the hidden lengths are 1.
#include "TOVBlaModule.h"

#include "real.h"
#include "with_lengths.h"

#include <cstddef>
