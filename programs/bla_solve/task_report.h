// SPDX-License-Identifier: BSD-3-Clause
// What the program says of the tasks of a factorisation.
#pragma once

#include "library.h"
#include "report.h"

#include <vector>

// How long they took, and would take on each of these numbers of workers.
void reportTasks(Report& report, const Tasks& tasks, const std::vector<int>& workers);
