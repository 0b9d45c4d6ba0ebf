// SPDX-License-Identifier: BSD-3-Clause
// A list of unknowns in a text file: numbers from 1, one or several to a line; what follows % or # in a line
// is a comment.
#pragma once

#include <string>
#include <vector>

// Counted from 0, in the sequence of the file. Throws InputError where they are not different unknowns of
// 1 ... n, at least one.
std::vector<int> readUnknowns(const std::string& path, int n);
