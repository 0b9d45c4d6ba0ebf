// SPDX-License-Identifier: BSD-3-Clause
// Preloaded into a program that calls the BLAS and LAPACK by their own names: exports those names and jumps
// to the module's entry points, arguments and result untouched. In the environment:
//
//   BLA_MODULE    the module's file
//   BLA_REACHED   a file, to which the names that were called are written at the end
//   BLA_WRONG     name=other: calls of the one go to the other, which shows that the comparison notices
//
// The six functions whose result the module changes on purpose (the kinds Complex, Single and ComplexAsSingle
// of the list) are not exported, nor is xerbla_, which the test programs replace by one of their own.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace {
struct Entry
{
    const char* name;
    void** target;
    const char* reached;
};
} // namespace

// The flag is set and the jump made without a register or the stack: the routine finds what the caller left
// there.
#define JUMP(name)                                                                                           \
    extern "C" {                                                                                             \
    [[gnu::visibility("hidden")]] void* instead_target_##name;                                               \
    [[gnu::visibility("hidden")]] char instead_reached_##name;                                               \
    }                                                                                                        \
    __asm__(".text\n.globl " #name "_\n.type " #name "_, @function\n" #name "_:\n"                           \
            "\tmovb $1, instead_reached_" #name "(%rip)\n"                                                   \
            "\tjmp *instead_target_" #name "(%rip)\n.size " #name "_, . - " #name "_\n");
#define ENTRY(name) {#name, &instead_target_##name, &instead_reached_##name},

#define OF_Nothing(what, name) what(name)
#define OF_Double(what, name) what(name)
#define OF_Integer(what, name) what(name)
#define OF_Logical(what, name) what(name)
#define OF_Complex(what, name)
#define OF_Single(what, name)
#define OF_ComplexAsSingle(what, name)

#define ROUTINE(name, ordinary, characters, result) OF_##result(JUMP, name)
#include "routines.def"
#undef ROUTINE

static const Entry entries[] = {
#define ROUTINE(name, ordinary, characters, result) OF_##result(ENTRY, name)
#include "routines.def"
#undef ROUTINE
};

static const char* environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

// With deep binding the module's own calls go to the BLAS and LAPACK that it was linked with, and not here
// again.
[[gnu::constructor]] static void open_the_module()
{
    const char *const file = environment("BLA_MODULE"), *const wrong = environment("BLA_WRONG");
    void* const module = dlopen(file, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND);
    for (const Entry& e : entries) {
        const std::size_t length = std::strlen(e.name);
        const bool other = !std::strncmp(wrong, e.name, length) && wrong[length] == '=';
        char name[32];
        std::snprintf(name, sizeof name, "blac_%s_", other ? wrong + length + 1 : e.name);
        *e.target = module ? dlsym(module, name) : nullptr;
        if (!*e.target) {
            std::fprintf(stderr, "no %s: %s\n", name, dlerror());
            std::abort();
        }
    }
}

[[gnu::destructor]] static void write_what_was_reached()
{
    std::FILE* const file = std::fopen(environment("BLA_REACHED"), "w");
    if (!file)
        return;
    for (const Entry& e : entries)
        if (*e.reached)
            std::fprintf(file, "%s\n", e.name);
    std::fclose(file);
}
