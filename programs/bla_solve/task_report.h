// SPDX-License-Identifier: BSD-3-Clause
// What the program says of the tasks of a factorisation.
#pragma once

#include "library.h"
#include "report.h"

#include <vector>

// How many there are and how long they took.
void reportTasks(Report& report, const Tasks& tasks);

// How long they would take on each of these numbers of workers.
void reportSimulation(Report& report, const Tasks& tasks, const std::vector<int>& workers);
