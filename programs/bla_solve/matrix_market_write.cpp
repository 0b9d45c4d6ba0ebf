// SPDX-License-Identifier: BSD-3-Clause
#include "matrix_market.h"
#include "output_file.h"

namespace {

void write(const std::string& path, const Block& x, bool symmetric)
{
    OutputFile file(path);
    std::fprintf(file.stream(), "%%%%MatrixMarket matrix array real %s\n%d %d\n",
                 symmetric ? "symmetric" : "general", x.n, x.columns);
    for (int j = 0; j < x.columns; ++j)
        for (int i = symmetric ? j : 0; i < x.n; ++i)
            std::fprintf(file.stream(), "%.17g\n", x.column(j)[i]);
    file.finish();
}

} // namespace

void writeVectors(const std::string& path, const Block& x)
{
    write(path, x, false);
}

void writeSymmetric(const std::string& path, const Block& x)
{
    write(path, x, true);
}
