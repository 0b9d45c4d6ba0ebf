// SPDX-License-Identifier: BSD-3-Clause
// Each entry point of the facade against the recording library: what arrives, and what comes back.
#include "TOVBlaModule.h"
#include "stub.h"

#include <gtest/gtest.h>

#include <array>
#include <dlfcn.h>
#include <ostream>
#include <utility>

namespace {

enum class Result { Nothing, Double, Integer, Logical, Single, Complex, ComplexAsSingle };

struct Routine
{
    const char* name;
    int arguments, characters;
    Result result;
};

void PrintTo(const Routine& routine, std::ostream* out)
{
    *out << routine.name;
}

const Routine routines[] = {
#define ROUTINE(name, arguments, characters, result) {#name, arguments, characters, Result::result},
#include "routines.def"
};

// More than any routine takes, so that a forwarder that reaches too far finds values that are told apart.
constexpr int Passed = 30;
using Values = std::array<std::uintptr_t, Passed>;

void* entry(const std::string& name)
{
    void* const address = dlsym(RTLD_DEFAULT, ("blac_" + name + "_").c_str());
    EXPECT_NE(address, nullptr) << "blac_" << name << "_ is not exported";
    return address;
}

template <class Type, std::size_t... I>
Type call(void* address, const Values& values, std::index_sequence<I...>)
{
    return reinterpret_cast<Type (*)(decltype((void)I, std::uintptr_t{})...)>(address)(values[I]...);
}

template <class Type>
Type call(const std::string& name, const Values& values)
{
    stub::calls.clear();
    return call<Type>(entry(name), values, std::make_index_sequence<Passed>());
}

// Distinct addresses for the ordinary arguments, then hidden lengths that differ from each other, from 1
// and 6.
char memory[Passed];
Values arguments_of(const Routine& routine)
{
    Values values;
    for (int i = 0; i < Passed; ++i)
        values[i] = i < routine.arguments ? reinterpret_cast<std::uintptr_t>(&memory[i]) : 1000u + i;
    return values;
}

class Forwarding : public ::testing::TestWithParam<Routine>
{
};

TEST_P(Forwarding, EveryArgumentArrivesAtItsPlaceThenTheLengths)
{
    const Routine& routine = GetParam();
    const std::string name = routine.name;
    const Values values = arguments_of(routine);
    switch (routine.result) {
    case Result::Nothing:
        call<void>(name, values);
        break;
    case Result::Double:
        EXPECT_EQ(call<double>(name, values), stub::Double);
        break;
    case Result::Integer:
        EXPECT_EQ(call<int>(name, values), stub::Integer);
        break;
    case Result::Logical:
        EXPECT_EQ(call<int>(name, values), stub::Logical);
        break;
    case Result::Single:
        EXPECT_EQ(call<double>(name, values), stub::SingleReading);
        break;
    default: // complex_test.cpp
        FAIL();
    }

    ASSERT_EQ(stub::calls.size(), 1u);
    const stub::Call& made = stub::calls[0];
    EXPECT_EQ(made.name, name);
    ASSERT_EQ(made.values.size(), static_cast<std::size_t>(routine.arguments + routine.characters));
    for (int i = 0; i < routine.arguments; ++i)
        EXPECT_EQ(made.values[i], values[i]) << "argument " << i + 1;
    for (int i = routine.arguments; i < routine.arguments + routine.characters; ++i) {
        const std::uintptr_t length = name == "xerbla" ? 6 : name == "ilaenv" ? values[i] : 1;
        EXPECT_EQ(made.values[i], length) << "length " << i - routine.arguments + 1;
    }
}

std::vector<Routine> ordinary()
{
    std::vector<Routine> list;
    for (const Routine& routine : routines)
        if (routine.result != Result::Complex && routine.result != Result::ComplexAsSingle)
            list.push_back(routine);
    return list;
}

INSTANTIATE_TEST_SUITE_P(Routine, Forwarding, ::testing::ValuesIn(ordinary()),
                         [](const auto& test) { return test.param.name; });

TEST(Facade, HasFiftyBlasAndNinetyOneLapackRoutines)
{
    EXPECT_EQ(std::size(routines), 141u);
    int blas = 0;
    while (routines[blas].name != std::string("dgesv"))
        ++blas;
    EXPECT_EQ(blas, 50);
    for (const Routine& routine : routines)
        entry(routine.name);
}

const stub::Call& only_call()
{
    EXPECT_EQ(stub::calls.size(), 1u);
    return stub::calls.back();
}

TEST(Facade, DgemmCalledWithLengthsOtherThan1StillPassesLengthsOf1)
{
    Values values{};
    values[13] = 7;
    values[14] = ~std::uintptr_t{0};
    call<void>("dgemm", values);
    EXPECT_EQ(only_call().values[13], 1u);
    EXPECT_EQ(only_call().values[14], 1u);
}

TEST(Facade, XerblaPassesALengthOf6)
{
    const int info = 3;
    stub::calls.clear();
    blac_xerbla_("DPOTRF2", &info);
    EXPECT_EQ(only_call().values[2], 6u);
}

TEST(Facade, IlaenvWithASixCharacterNameAndLength6PassesTheLength6On)
{
    const int ispec = 1, none = -1;
    stub::calls.clear();
    EXPECT_EQ(blac_ilaenv_(&ispec, "DGETRF", " ", &none, &none, &none, &none, 6, 1), stub::Integer);
    EXPECT_EQ(only_call().values[7], 6u);
    EXPECT_EQ(only_call().values[8], 1u);
}

TEST(Facade, DsyevxReceives20ArgumentsAndPasses23Values)
{
    Values values;
    for (int i = 0; i < Passed; ++i)
        values[i] = 100u + i;
    call<void>("dsyevx", values);
    ASSERT_EQ(only_call().values.size(), 23u);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(only_call().values[i], 100u + i);
    for (int i = 20; i < 23; ++i)
        EXPECT_EQ(only_call().values[i], 1u);
}

TEST(Facade, DlamchAsksTheLibraryAndNotTheConstants)
{
    stub::calls.clear();
    EXPECT_EQ(blac_dlamch_("E"), stub::Double);
    EXPECT_EQ(only_call().name, "dlamch");
}

TEST(Facade, HdmconCallsNothing)
{
    stub::calls.clear();
    const int radix = 7;
    EXPECT_EQ(blac_hdmcon_(&radix), 2.0);
    EXPECT_TRUE(stub::calls.empty());
}

} // namespace
