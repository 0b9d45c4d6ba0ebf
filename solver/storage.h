// SPDX-License-Identifier: BSD-3-Clause
// What an array takes, room to grow included.
#pragma once

#include <vector>

template <class T>
double storageOf(const std::vector<T>& v)
{
    return static_cast<double>(v.capacity()) * sizeof(T);
}
