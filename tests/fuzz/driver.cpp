// SPDX-License-Identifier: BSD-3-Clause
// Runs a fuzz target without a fuzzing engine, with any compiler:
//
//     fuzz_... [--runs N] [--seconds S] [--seed SEED] [FILE or DIRECTORY...]
//
// judges the files first, then N inputs (or S seconds of them) made from these files, or from nothing, by
// random changes. The seed is that of all tests (BLA_TEST_SEED), or SEED. An input that is a finding is
// written to finding-TARGET.bin.
#include "../support/seed.h"
#include "bytes.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

using Input = std::vector<std::uint8_t>;

#define FINDING "finding-" BLA_FUZZ_TARGET ".bin"

static Input input; // the one under judgement

static void keep_finding(int number)
{
    const int file = open(FINDING, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file < 0 || write(file, input.data(), input.size()) < 0)
        _exit(3);
    static const char message[] = "the input is in " FINDING "\n";
    if (write(2, message, sizeof message - 1) < 0)
        _exit(3);
    std::signal(number, SIG_DFL);
    _exit(1);
}

static Input read_file(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return Input(std::istreambuf_iterator<char>(file), {});
}

static Input change(const std::vector<Input>& corpus, std::mt19937_64& random)
{
    Input bytes;
    auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % (n ? n : 1)); };
    auto place = [&](std::size_t i) { return bytes.begin() + static_cast<std::ptrdiff_t>(i); };
    if (corpus.empty()) {
        bytes.resize(below(64));
        for (auto& b : bytes)
            b = static_cast<std::uint8_t>(random());
        return bytes;
    }
    bytes = corpus[below(corpus.size())];
    for (std::size_t changes = 1 + below(6); changes-- > 0;) {
        const std::size_t at = below(bytes.size() + 1), length = std::min(below(9), bytes.size() - at);
        switch (random() % 6) {
        case 0: // a bit
            if (at < bytes.size())
                bytes[at] ^= static_cast<std::uint8_t>(1u << random() % 8);
            break;
        case 1: // a byte
            if (at < bytes.size())
                bytes[at] = static_cast<std::uint8_t>(random());
            break;
        case 2: // a character that texts are made of
            bytes.insert(place(at), static_cast<std::uint8_t>("0123456789 \n\t-+.eE%dD\r"[random() % 22]));
            break;
        case 3:
            bytes.erase(place(at), place(at + length));
            break;
        case 4: { // once more, elsewhere
            const Input part(place(at), place(at + length));
            bytes.insert(place(below(bytes.size() + 1)), part.begin(), part.end());
            break;
        }
        case 5: { // the end of another one
            const Input& other = corpus[below(corpus.size())];
            bytes.resize(at);
            bytes.insert(bytes.end(), other.begin() + static_cast<std::ptrdiff_t>(std::min(at, other.size())),
                         other.end());
            break;
        }
        }
    }
    return bytes;
}

int main(int argc, char** argv)
{
    unsigned long runs = 0, seed = support::seed_of_run();
    double seconds = 0.0;
    std::vector<Input> corpus;
    for (int i = 1; i < argc; ++i) {
        const bool more = i + 1 < argc;
        if (std::strcmp(argv[i], "--runs") == 0 && more) {
            runs = std::strtoul(argv[++i], nullptr, 10);
        } else if (std::strcmp(argv[i], "--seconds") == 0 && more) {
            seconds = std::strtod(argv[++i], nullptr);
        } else if (std::strcmp(argv[i], "--seed") == 0 && more) {
            seed = std::strtoul(argv[++i], nullptr, 10);
        } else if (std::filesystem::is_directory(argv[i])) {
            for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
                corpus.push_back(read_file(entry.path()));
        } else if (std::filesystem::exists(argv[i])) {
            corpus.push_back(read_file(argv[i]));
        } else {
            std::fprintf(stderr, "no such file: %s\n", argv[i]);
            return 2;
        }
    }
    for (int number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(number, keep_finding);

    std::printf("seed %lu\n", seed);
    std::fflush(stdout);
    for (const Input& file : corpus) {
        input = file;
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    std::mt19937_64 random(seed);
    const auto start = std::chrono::steady_clock::now();
    auto elapsed = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    unsigned long done = 0;
    while (seconds > 0.0 ? elapsed() < seconds : done < runs) {
        input = change(corpus, random);
        LLVMFuzzerTestOneInput(input.data(), input.size());
        ++done;
    }
    std::printf("%zu files and %lu changed inputs, no finding\n", corpus.size(), done);
}
