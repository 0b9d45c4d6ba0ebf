// SPDX-License-Identifier: BSD-3-Clause
// Does the tasks of a schedule, each as soon as those that it waits for are done.
#pragma once

#include "schedule.h"

#include <functional>

// On `threads` threads of oneTBB, those of the caller's arena among them; on the calling one alone, in
// sequence, where that is all. What a task throws ends the others that have not begun, and is thrown again
// when all have ended.
void execute(const Schedule& schedule, int threads, const std::function<void(const Task&)>& task);
