// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

template <class Routine, int Count, class... Lengths>
struct Lengthened : Lengthened<Routine, Count - 1, Lengths..., std::size_t>
{
};

template <class Result, class... Arguments, class... Lengths>
struct Lengthened<Result(Arguments...), 0, Lengths...>
{
    using Type = Result(Arguments..., Lengths...);
};

/// The type of a routine of the header, with a hidden length for each of its option characters: what Fortran
/// callers pass behind the ordinary arguments, and what the library beneath is passed.
template <class Routine, int Count>
using WithLengths = typename Lengthened<Routine, Count>::Type;
