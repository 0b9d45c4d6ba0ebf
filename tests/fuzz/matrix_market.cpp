// SPDX-License-Identifier: BSD-3-Clause
// The reader of Matrix Market files on any bytes: it refuses them with one line that names the file, or
// returns what a plain reading of the same text gives; neither refuses what the other takes.
#include "matrix_market.h"
#include "bytes.h"
#include "error.h"
#include "plain_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <sys/mman.h>
#include <type_traits>
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

/// Reads with read(), which must refuse what is not `good`; a refusal must be a line that begins with the
/// path.
template <class Read>
void try_reading(const std::string& path, bool good, Read read)
{
    try {
        read();
        require(good, "what is no such file is refused");
    } catch (const InputError& error) {
        const std::string message = error.what();
        require(!good, message.c_str());
        require(message.rfind(path + ": ", 0) == 0 && message.size() > path.size() + 2 &&
                    message.size() < path.size() + 400 && message.find('\n') == std::string::npos,
                "a refusal is a line that names the file");
    }
}

bool same_bits(double x, double y)
{
    return std::memcmp(&x, &y, sizeof x) == 0;
}

using Places = std::map<std::pair<std::int64_t, std::int64_t>, double>;

/// Entries at one place are summed in the order of the file.
Places sums_of(const plain::File& file)
{
    Places sums;
    for (const plain::Entry& e : file.entries)
        if (!file.array || e.value != 0.0) {
            const auto [at, first] = sums.insert({{e.row, e.column}, e.value});
            if (!first)
                at->second += e.value;
        }
    return sums;
}

template <class Values>
bool finite(const Values& values)
{
    return std::all_of(values.begin(), values.end(), [](const auto& v) {
        if constexpr (std::is_same_v<Values, Places>)
            return std::isfinite(v.second);
        else
            return std::isfinite(v);
    });
}

// Beyond this, what the header says must be in the file as well.
constexpr std::int64_t small = 65536;

void check_matrix(const std::string& path, const std::optional<plain::File>& file)
{
    const Places sums = file ? sums_of(*file) : Places();
    const bool good = file && file->rows == file->columns && finite(sums) &&
                      file->rows <= std::max(small, file->announced * (file->mirrored ? 2 : 1));
    try_reading(path, good, [&] {
        const Matrix a = readMatrix(path);
        if (!good)
            return;
        require(a.n == file->rows && a.entries() == sums.size() &&
                    a.start.size() == static_cast<std::size_t>(a.n) + 1 && a.start.front() == 0,
                "all rows and entries");
        auto wanted = sums.begin();
        for (int i = 0; i < a.n; ++i)
            for (std::int64_t p = a.start[static_cast<std::size_t>(i)];
                 p < a.start[static_cast<std::size_t>(i) + 1]; ++p) {
                const auto at = static_cast<std::size_t>(p);
                require(at < a.entries() && wanted != sums.end(), "as many entries as there are");
                require(wanted->first == std::pair<std::int64_t, std::int64_t>(i, a.column[at]),
                        "the entries stand where they belong");
                require(same_bits(wanted->second, a.value[at]), "the values are those of the file");
                ++wanted;
            }
        require(wanted == sums.end() && a.value.size() == sums.size(), "all entries");
        const bool symmetric = std::all_of(sums.begin(), sums.end(), [&](const auto& entry) {
            const auto other = sums.find({entry.first.second, entry.first.first});
            return other != sums.end() && other->second == entry.second;
        });
        require(a.symmetric == symmetric, "symmetric is what has symmetric values");
    });
}

void check_vectors(const std::string& path, const std::optional<plain::File>& file)
{
    constexpr int n = 3;
    bool good = file && file->rows == n && (n * file->columns <= small || file->columns <= file->announced);
    std::vector<double> wanted(good ? static_cast<std::size_t>(n * file->columns) : 0);
    if (good)
        for (const plain::Entry& e : file->entries)
            wanted[static_cast<std::size_t>(e.row + n * e.column)] += e.value;
    good = good && finite(wanted);
    try_reading(path, good, [&] {
        const Block b = readVectors(path, n);
        if (!good)
            return;
        require(b.n == n && b.columns == file->columns && b.value.size() == wanted.size(), "all columns");
        for (std::size_t k = 0; k < wanted.size(); ++k)
            require(same_bits(b.value[k], wanted[k]), "the right-hand sides are those of the file");
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const File memory(data, size);
    const auto file = plain::read(std::string(reinterpret_cast<const char*>(data), size));
    check_matrix(memory.path(), file);
    check_vectors(memory.path(), file);
    return 0;
}
