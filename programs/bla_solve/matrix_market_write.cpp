// SPDX-License-Identifier: BSD-3-Clause
#include "matrix_market.h"
#include "output_file.h"

void writeVectors(const std::string& path, const Block& x)
{
    OutputFile file(path);
    std::fprintf(file.stream(), "%%%%MatrixMarket matrix array real general\n%d %d\n", x.n, x.columns);
    for (double v : x.value)
        std::fprintf(file.stream(), "%.17g\n", v);
    file.finish();
}
