// SPDX-License-Identifier: BSD-3-Clause
// Prints one hash per kernel of all that the kernel writes over a fixed set of calls, and one of all kernels.
// The hashes must be the same on every processor, tier, alignment and compiler.
//
//     digest [--tier V|R|A] [--expect-tier V|R|A] [--compare FILE | --write FILE] [KERNEL...]
//
// --tier        forces a tier, which the processor must have
// --expect-tier fails when another tier ran
// --compare     fails when a hash is not the one in FILE or a kernel is missing on either side
// --write       renews FILE
#include "digest.h"
#include "processor.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <unistd.h>
#include <xmmintrin.h>

namespace digest {

static std::vector<Kernel>& kernels()
{
    static std::vector<Kernel> list;
    return list;
}

Registration::Registration(const Kernel& kernel)
{
    kernels().push_back(kernel);
}

} // namespace digest

using digest::Case;
using digest::Kernel;

namespace {

constexpr int Cases = 256, Variations = 4;

const char* running = ""; // the kernel, for the signal handler
int failures = 0;

[[noreturn]] void fail(const std::string& message)
{
    std::fprintf(stderr, "digest: %s\n", message.c_str());
    std::exit(2);
}

void illegal_instruction(int)
{
    for (const char* text : {"digest: illegal instruction in ", running, "\n"})
        if (write(2, text, std::strlen(text)) < 0)
            break;
    _exit(3);
}

// Every case runs at several alignments, which must not matter.
std::uint64_t hash_of(const Kernel& kernel)
{
    running = kernel.name;
    std::uint64_t seed = 0, hash = 0;
    for (const char* p = kernel.name; *p; ++p)
        seed = seed * 131 + static_cast<unsigned char>(*p);
    for (int number = 0; number < Cases; ++number) {
        std::uint64_t first = 0;
        for (int variation = 0; variation < Variations; ++variation) {
            Case c(seed, number, variation);
            const unsigned before = _mm_getcsr();
            const unsigned mode = (before & ~0xe040u & ~0x3fu) | (c.control() & 3u) << 13 |
                                  (c.control() & 4 ? 0x8040u : 0u); // rounding; denormals taken for zero
            _mm_setcsr(mode);
            kernel.call(c);
            const unsigned after = _mm_getcsr();
            _mm_setcsr(before);
            if ((after & ~0x3fu) != mode) {
                std::fprintf(stderr, "digest: %s changes the rounding mode (case %d)\n", kernel.name, number);
                ++failures;
            }
            const std::uint64_t h = c.hash(kernel.results);
            if (variation == 0)
                first = h;
            else if (h != first) {
                std::fprintf(stderr, "digest: %s depends on the alignment (case %d, variation %d)\n",
                             kernel.name, number, variation);
                ++failures;
            }
        }
        hash = (hash ^ first) * 0x9fb21c651e98df25;
        hash ^= hash >> 29;
    }
    return hash;
}

std::uint32_t mask_of(const std::string& name)
{
    if (name == "V")
        return tier::V;
    if (name == "R")
        return tier::R;
    if (name == "A")
        return tier::A;
    fail("there is no tier " + name);
}

const char* chosen_tier()
{
    const std::uint32_t word = bla_read_feature_word();
    return (word & tier::V) == tier::V ? "V" : (word & tier::R) == tier::R ? "R" : "A";
}

using Hashes = std::map<std::string, std::string>;

std::string hex(std::uint64_t x)
{
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(x));
    return text;
}

Hashes read(const char* path)
{
    std::FILE* file = std::fopen(path, "r");
    if (!file)
        fail(std::string("cannot read ") + path);
    Hashes hashes;
    char line[200], name[100], value[100];
    while (std::fgets(line, sizeof line, file))
        if (line[0] != '#' && std::sscanf(line, "%99s %99s", name, value) == 2)
            hashes[name] = value;
    std::fclose(file);
    return hashes;
}

void compare(const Hashes& expected, const Hashes& actual)
{
    for (const auto& [name, hash] : actual)
        if (!expected.count(name) || expected.at(name) != hash) {
            std::fprintf(stderr, "digest: %s is %s, expected %s\n", name.c_str(), hash.c_str(),
                         expected.count(name) ? expected.at(name).c_str() : "nothing");
            ++failures;
        }
    for (const auto& [name, hash] : expected)
        if (!actual.count(name)) {
            std::fprintf(stderr, "digest: %s was not run\n", name.c_str());
            ++failures;
        }
}

void print(std::FILE* out, const Hashes& hashes)
{
    for (const auto& [name, hash] : hashes)
        if (name != "total")
            std::fprintf(out, "%-26s %s\n", name.c_str(), hash.c_str());
    std::fprintf(out, "%-26s %s\n", "total", hashes.at("total").c_str());
}

} // namespace

int main(int argc, char** argv)
{
    std::string force, expect;
    const char *compare_with = nullptr, *write_to = nullptr;
    std::vector<std::string> selected;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option.rfind("--", 0) != 0) {
            selected.push_back(option);
            continue;
        }
        if (++i == argc)
            fail(option + " needs a value");
        if (option == "--tier")
            force = argv[i];
        else if (option == "--expect-tier")
            expect = argv[i];
        else if (option == "--compare")
            compare_with = argv[i];
        else if (option == "--write")
            write_to = argv[i];
        else
            fail("there is no option " + option);
    }
    std::signal(SIGILL, illegal_instruction);

    bla_fill_feature_word();
    if (!force.empty()) {
        const std::uint32_t mask = mask_of(force);
        if ((bla_feature_word & mask) != mask)
            fail("this processor has no tier " + force);
        bla_feature_word = mask;
    } else {
        bla_feature_word = 0; // the first kernel fills it
    }

    std::vector<Kernel> kernels = digest::kernels();
    std::sort(kernels.begin(), kernels.end(),
              [](const Kernel& a, const Kernel& b) { return std::strcmp(a.name, b.name) < 0; });
    Hashes hashes;
    std::uint64_t total = 0;
    for (const Kernel& kernel : kernels) {
        if (!selected.empty() && std::find(selected.begin(), selected.end(), kernel.name) == selected.end())
            continue;
        const std::uint64_t hash = hash_of(kernel);
        hashes[kernel.name] = hex(hash);
        total = (total ^ hash) * 0x9fb21c651e98df25;
        total ^= total >> 31;
    }
    hashes["total"] = hex(total);

    std::printf("# tier %s\n# compiler %s\n", chosen_tier(), BLA_COMPILER);
    print(stdout, hashes);
    if (!expect.empty() && expect != chosen_tier()) {
        std::fprintf(stderr, "digest: tier %s ran, expected %s\n", chosen_tier(), expect.c_str());
        ++failures;
    }
    if (compare_with)
        compare(read(compare_with), hashes);
    if (failures)
        return 1;
    if (write_to) {
        std::FILE* file = std::fopen(write_to, "w");
        if (!file)
            fail(std::string("cannot write ") + write_to);
        std::fprintf(
            file, "# The digest of every kernel, the same on every processor, tier, alignment and compiler.\n"
                  "# Renew on purpose only: ninja -C build renew_digest\n");
        print(file, hashes);
        std::fclose(file);
    }
    return 0;
}
