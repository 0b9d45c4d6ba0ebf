// SPDX-License-Identifier: BSD-3-Clause
// The reader of Matrix Market files on any bytes: it refuses them with one line that names the file, or
// returns what its header promises.
#include "matrix_market.h"
#include "bytes.h"
#include "error.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

void require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "the reader's promise is broken: %s\n", what);
        std::abort();
    }
}

/// The bytes as a file in memory.
class File
{
public:
    File(const std::uint8_t* data, std::size_t size) : number_(memfd_create("fuzz", 0))
    {
        require(number_ >= 0 && (size == 0 || write(number_, data, size) == static_cast<ssize_t>(size)),
                "a file");
    }
    ~File() { close(number_); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(number_); }

private:
    int number_;
};

/// Reads with read(); a refusal must be a line that begins with the path.
template <class Read>
void try_reading(const std::string& path, Read read)
{
    try {
        read();
    } catch (const InputError& error) {
        const std::string message = error.what();
        require(message.rfind(path + ": ", 0) == 0 && message.size() > path.size() + 2,
                "a refusal names the file");
    }
}

/// Orders beyond a few thousand only cost memory and time.
bool huge(const std::uint8_t* data, std::size_t size)
{
    int digits = 0;
    for (std::size_t i = 0; i < size; ++i) {
        digits = std::isdigit(data[i]) ? digits + 1 : 0;
        if (digits > 4)
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (huge(data, size))
        return 0;
    const File file(data, size);
    const std::string path = file.path();
    try_reading(path, [&] {
        const SparseMatrix a = readMatrix(path);
        require(a.n >= 1, "a matrix has rows");
        require(a.start.size() == static_cast<std::size_t>(a.n) + 1 && a.start.front() == 0,
                "one start a row");
        require(a.column.size() == a.value.size() && a.start.back() == static_cast<int>(a.column.size()),
                "all entries");
        for (int j = 0; j < a.n; ++j) {
            const auto first = static_cast<std::size_t>(a.start[static_cast<std::size_t>(j)]),
                       last = static_cast<std::size_t>(a.start[static_cast<std::size_t>(j) + 1]);
            require(first <= last && last <= a.column.size(), "starts ascend");
            for (std::size_t p = first; p < last; ++p)
                require(a.column[p] >= 0 && a.column[p] < a.n &&
                            (p == first || a.column[p - 1] < a.column[p]),
                        "columns ascend and lie inside");
        }
        for (double x : a.value)
            require(std::isfinite(x), "values are finite");
        if (a.symmetric)
            require(equal(a, transposed(a)), "what is called symmetric is");
    });
    try_reading(path, [&] {
        const Vectors b = readVectors(path, 3);
        require(b.n == 3 && b.columns >= 1 && b.value.size() == static_cast<std::size_t>(3 * b.columns),
                "columns");
    });
    return 0;
}
