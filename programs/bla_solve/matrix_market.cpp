// SPDX-License-Identifier: BSD-3-Clause
// CHOLMOD reads the numbers. It is lenient (it guesses what a header does not say, accepts indices from 0
// and ignores what follows a number), so the text is checked first, with messages that name the line.
#include "matrix_market.h"

#include "error.h"

#include <cholmod.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <string_view>

namespace {

// CHOLMOD takes numbers from here on for infinite.
constexpr double largestValue = 1e308;

struct Header
{
    bool array = false;
    bool symmetric = false;
    bool skew = false;
    std::int64_t rows = 0, columns = 0, entries = 0;
};

struct Text
{
    std::string path;
    std::string content;
};

[[noreturn]] void fail(const Text& text, const std::string& what)
{
    throw InputError(text.path + ": " + what);
}

[[noreturn]] void fail(const Text& text, std::int64_t line, const std::string& what)
{
    fail(text, "line " + std::to_string(line) + ": " + what);
}

std::string lower(std::string_view word)
{
    std::string s(word);
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

Text load(const std::string& path)
{
    Text text{path, {}};
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file)
        fail(text, std::strerror(errno));
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(file, std::fclose);
    char block[1 << 16];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, file)) > 0;)
        text.content.append(block, got);
    if (std::ferror(file))
        fail(text, std::strerror(errno));
    if (text.content.empty())
        fail(text, "the file is empty");
    // CHOLMOD knows this word in one spelling only, and would guess what the rest of the line says.
    constexpr std::string_view word = "%%MatrixMarket";
    if (lower(std::string_view(text.content).substr(0, word.size())) == lower(word))
        text.content.replace(0, word.size(), word);
    return text;
}

// The blank-separated words of a line, at most 6 of them.
struct Words
{
    std::string_view word[6];
    int count = 0;
};

Words split(std::string_view line)
{
    Words words;
    std::size_t at = 0;
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (words.count < 6) {
        while (at < line.size() && blank(line[at]))
            ++at;
        std::size_t end = at;
        while (end < line.size() && !blank(line[end]))
            ++end;
        if (end == at)
            break;
        words.word[words.count++] = line.substr(at, end - at);
        at = end;
    }
    return words;
}

bool parseInteger(std::string_view word, std::int64_t& value)
{
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

// A number too large reads as infinity, one too small as zero, both of which strtod does.
bool parseNumber(std::string_view word, double& value)
{
    if (word.size() > 1 && word[0] == '+' && word[1] != '-')
        word.remove_prefix(1);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error == std::errc::result_out_of_range)
        value = std::strtod(std::string(word).c_str(), nullptr);
    return error != std::errc::invalid_argument && end == word.data() + word.size();
}

Header readBanner(const Text& text, std::string_view line)
{
    const Words words = split(line);
    if (words.count == 0 || words.word[0].data() != line.data() || lower(words.word[0]) != "%%matrixmarket")
        fail(text, "not a Matrix Market file (no %%MatrixMarket line)");
    if (words.count != 5)
        fail(text, 1, "the %%MatrixMarket line needs object, format, field and symmetry");
    const std::string object = lower(words.word[1]), format = lower(words.word[2]),
                      field = lower(words.word[3]), symmetry = lower(words.word[4]);
    if (object != "matrix")
        fail(text, 1, "the object is not a matrix but: " + object);
    Header header;
    header.array = format == "array";
    if (!header.array && format != "coordinate")
        fail(text, 1, "unknown format: " + format);
    if (field == "complex")
        fail(text, "the matrix is complex; only real matrices are solved");
    if (field == "pattern")
        fail(text, "the file holds a pattern only, no values");
    if (field != "real" && field != "integer")
        fail(text, 1, "unknown field: " + field);
    header.symmetric = symmetry == "symmetric";
    header.skew = symmetry == "skew-symmetric";
    if (!header.symmetric && !header.skew && symmetry != "general")
        fail(text, 1, "unknown symmetry of real values: " + symmetry);
    return header;
}

void readSizes(const Text& text, std::int64_t line, const Words& words, Header& header)
{
    bool good = words.count == (header.array ? 2 : 3) && parseInteger(words.word[0], header.rows) &&
                parseInteger(words.word[1], header.columns) && header.rows >= 0 && header.columns >= 0;
    if (good && !header.array)
        good = parseInteger(words.word[2], header.entries) && header.entries >= 0;
    if (!good)
        fail(text, line, "the size line is malformed");
    if (header.rows == 0 || header.columns == 0)
        fail(text, "the matrix is empty (" + std::to_string(header.rows) + " x " +
                       std::to_string(header.columns) + ")");
    if (header.rows > std::numeric_limits<int>::max() / 2 ||
        header.columns > std::numeric_limits<int>::max() / 2 ||
        header.entries > std::numeric_limits<int>::max() / 2)
        fail(text, line, "too large for 32-bit indices");
    if ((header.symmetric || header.skew) && header.rows != header.columns)
        fail(text, line, "a symmetric matrix must be square");
    if (header.array) {
        const std::int64_t n = header.rows;
        header.entries = header.symmetric ? n * (n + 1) / 2
                         : header.skew    ? n * (n - 1) / 2
                                          : n * header.columns;
    }
}

// Walks every line of the text and stops at the first that a strict reader must refuse.
Header check(const Text& text)
{
    const std::string_view all = text.content;
    Header header;
    std::int64_t number = 0, found = 0;
    bool sized = false, below = false, above = false;
    for (std::size_t at = 0; at < all.size();) {
        std::size_t end = all.find('\n', at);
        if (end == std::string_view::npos)
            end = all.size();
        const std::string_view line = all.substr(at, end - at);
        at = end + 1;
        if (++number == 1) {
            header = readBanner(text, line);
            continue;
        }
        if (!line.empty() && line[0] == '%')
            continue;
        const Words words = split(line);
        if (words.count == 0)
            continue;
        if (!sized) {
            readSizes(text, number, words, header);
            sized = true;
            continue;
        }
        if (++found > header.entries)
            fail(text, number, "more than the " + std::to_string(header.entries) + " entries announced");
        const bool last = at > all.size();
        const std::string torn = last && found == header.entries ? "" : last ? " (file truncated?)" : "";
        if (words.count != (header.array ? 1 : 3))
            fail(text, number,
                 (header.array ? "expected one value" : "expected row, column and value") + torn);
        std::int64_t i = 1, j = 1;
        if (!header.array) {
            if (!parseInteger(words.word[0], i) || !parseInteger(words.word[1], j))
                fail(text, number, "row and column must be integers" + torn);
            if (i < 1 || i > header.rows || j < 1 || j > header.columns)
                fail(text, number,
                     "entry (" + std::to_string(i) + ", " + std::to_string(j) + ") lies outside the " +
                         std::to_string(header.rows) + " x " + std::to_string(header.columns) + " matrix");
            below |= i > j;
            above |= i < j;
        }
        double value;
        const std::string_view word = words.word[words.count - 1];
        if (!parseNumber(word, value))
            fail(text, number, std::string(word) + " is not a number" + torn);
        if (std::isnan(value))
            fail(text, number, "the value is not a number (NaN)");
        if (std::fabs(value) >= largestValue)
            fail(text, number,
                 "the value " + std::string(word) + " is infinite, or too large to compute with");
        if (header.skew && !header.array && i == j && value != 0.0)
            fail(text, number, "a skew-symmetric matrix has no diagonal");
    }
    if (!sized)
        fail(text, "truncated: there is no size line");
    if (found < header.entries)
        fail(text,
             "truncated: " + std::to_string(found) + " of " + std::to_string(header.entries) + " entries");
    if ((header.symmetric || header.skew) && below && above)
        fail(text,
             "the header says one triangle is stored, but there are entries on both sides of the diagonal");
    return header;
}

class Cholmod
{
public:
    Cholmod()
    {
        cholmod_start(&common);
        common.print = 0;
    }
    ~Cholmod() { cholmod_finish(&common); }
    Cholmod(const Cholmod&) = delete;
    Cholmod& operator=(const Cholmod&) = delete;

    cholmod_common common;
};

std::unique_ptr<std::FILE, int (*)(std::FILE*)> openText(const Text& text)
{
    std::FILE* file = fmemopen(const_cast<char*>(text.content.data()), text.content.size(), "rb");
    if (!file)
        fail(text, std::strerror(errno));
    return {file, std::fclose};
}

std::vector<Triplet> readTriplets(const Text& text, const Header& header)
{
    Cholmod cholmod;
    const auto file = openText(text);
    std::vector<Triplet> entries;
    if (header.array) {
        cholmod_dense* dense = cholmod_read_dense(file.get(), &cholmod.common);
        if (!dense || dense->xtype != CHOLMOD_REAL)
            fail(text, "the values could not be read");
        const double* x = static_cast<const double*>(dense->x);
        for (std::size_t j = 0; j < dense->ncol; ++j)
            for (std::size_t i = 0; i < dense->nrow; ++i)
                if (x[i + j * dense->d] != 0.0)
                    entries.push_back({static_cast<int>(i), static_cast<int>(j), x[i + j * dense->d]});
        cholmod_free_dense(&dense, &cholmod.common);
        return entries;
    }
    cholmod_triplet* read = cholmod_read_triplet(file.get(), &cholmod.common);
    if (!read || read->xtype != CHOLMOD_REAL)
        fail(text, "the entries could not be read");
    const int* row = static_cast<const int*>(read->i);
    const int* column = static_cast<const int*>(read->j);
    const double* x = static_cast<const double*>(read->x);
    entries.reserve(read->nnz * (read->stype != 0 ? 2 : 1));
    for (std::size_t e = 0; e < read->nnz; ++e) {
        entries.push_back({row[e], column[e], x[e]});
        if (read->stype != 0 && row[e] != column[e])
            entries.push_back({column[e], row[e], x[e]});
    }
    cholmod_free_triplet(&read, &cholmod.common);
    return entries;
}

} // namespace

SparseMatrix readMatrix(const std::string& path)
{
    const Text text = load(path);
    const Header header = check(text);
    if (header.rows != header.columns)
        fail(text, "the matrix is not square (" + std::to_string(header.rows) + " x " +
                       std::to_string(header.columns) + ")");
    SparseMatrix a = fromTriplets(static_cast<int>(header.rows), readTriplets(text, header));
    for (double v : a.value)
        if (!std::isfinite(v))
            fail(text, "entries given more than once add up to infinity");
    a.symmetric = header.symmetric || equal(a, transposed(a));
    return a;
}

Vectors readVectors(const std::string& path, int n)
{
    const Text text = load(path);
    const Header header = check(text);
    if (header.rows != n)
        fail(text, "the right-hand side has " + std::to_string(header.rows) + " rows, the matrix " +
                       std::to_string(n));
    Vectors b(n, static_cast<int>(header.columns));
    for (const Triplet& t : readTriplets(text, header))
        b.column(t.column)[t.row] += t.value;
    return b;
}

void writeVectors(const std::string& path, const Vectors& x)
{
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (!file)
        throw InputError(path + ": " + std::strerror(errno));
    std::fprintf(file, "%%%%MatrixMarket matrix array real general\n%d %d\n", x.n, x.columns);
    for (double v : x.value)
        std::fprintf(file, "%.17g\n", v);
    const bool failed = std::ferror(file) != 0;
    if (std::fclose(file) != 0 || failed)
        throw InputError(path + ": " + std::strerror(errno));
}
