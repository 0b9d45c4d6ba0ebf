# SPDX-License-Identifier: BSD-3-Clause
"""Small wrong changes to the library, and the programs of which one must fail on each.

(what it breaks, file, text found exactly once in it, text in its place, programs)

A program is a target of the build, or a test in Python that runs the programs, with its arguments: "kernel_tests
--gtest_filter=*Scale*", "tests/solve/test_files.py Bad".
"""
MODULE = "TOVBla/TOVBlaModule.m/"
SOURCE = "TOVBla/TOVBlaCore.m/src/"
PRIVATE = "TOVBla/TOVBlaCore.m/private/"

KERNELS = ("fuzz_kernels",)
FRAME = ("frame_tests",)

MUTATIONS = [
    # pivots
    ("a pivot equal to the tolerance is accepted", PRIVATE + "pivot.h", "p > tol ||", "p >= tol ||", KERNELS),
    ("a pivot of minus the tolerance is accepted", PRIVATE + "pivot.h", "-tol > p;", "-tol >= p;", KERNELS),
    ("a NaN pivot is accepted", PRIVATE + "pivot.h", "return p > tol || -tol > p;", "return !(p <= tol && -tol <= p);",
     KERNELS),
    ("negative pivots are taken for tiny", PRIVATE + "pivot.h", " || -tol > p", "", KERNELS),
    ("the reciprocal of a replaced pivot is off by a last bit", PRIVATE + "elimination.h",
     "return {pivot::Huge, pivot::Tiny};", "return {pivot::Huge, pivot::Tiny * (1.0 + 0x1p-52)};", KERNELS),
    ("a replaced pivot is half as huge", PRIVATE + "elimination.h", "return {pivot::Huge, pivot::Tiny};",
     "return {pivot::Huge * 0.5, pivot::Tiny};", KERNELS),
    ("the shift of a pivot has the wrong sign", PRIVATE + "elimination.h", "negpiv[k] == 1 ? -1.0 * s : 1.0 * s",
     "negpiv[k] == 1 ? 1.0 * s : -1.0 * s", KERNELS),
    ("every flag but 0 shifts downwards", PRIVATE + "elimination.h", "negpiv[k] == 1", "negpiv[k] != 0", KERNELS),
    ("dcorr has the sign of the shift", PRIVATE + "elimination.h", "dcorr[k] = -shift;", "dcorr[k] = shift;", KERNELS),
    ("dcorr of an untouched pivot is -0", PRIVATE + "elimination.h", "dcorr[k] = 0.0;", "dcorr[k] = -0.0;", KERNELS),
    ("a scale of zero divides the tested value", PRIVATE + "elimination.h", "s > 0.0 ? p / s", "s >= 0.0 ? p / s",
     KERNELS),
    ("the tested value is multiplied by a reciprocal", PRIVATE + "elimination.h", "? p / s : p",
     "? p * (1.0 / s) : p", ("kernel_tests", "--gtest_filter=*IsAQuotient*")),
    # elimination
    ("one multiplier too few is formed", PRIVATE + "elimination.h",
     "for (int64_t j = k + 1; j < columns; ++j)\n            a[k", "for (int64_t j = k + 2; j < columns; ++j)\n            a[k",
     KERNELS),
    ("the multiplier is divided by the pivot", PRIVATE + "elimination_tiles.h",
     "const double multiplier = reciprocal * (Symmetric ? x[K][J] : x[J][K]);",
     "const double multiplier = (Symmetric ? x[K][J] : x[J][K]) / x[K][K];", KERNELS),
    ("a fused multiply-add", PRIVATE + "elimination_tiles.h", "x[J][R] = x[J][R] - x[K][R] * multiplier;",
     "x[J][R] = __builtin_fma(-x[K][R], multiplier, x[J][R]);", KERNELS),
    ("the strips that a walk leaves behind miss a pivot", PRIVATE + "elimination_tiles.h",
     "fetch<Rows, 4>(t, i, j, last, packed);", "fetch<Rows, 4>(t, i, j, last - 1, packed);",
     ("kernel_tests", "--gtest_filter=*OnLargeFronts*")),
    ("the second walk does not begin at a whole strip", PRIVATE + "elimination_tiles.h",
     "n - (beyond + Strip - 1) / Strip * Strip", "n - beyond", ("kernel_tests", "--gtest_filter=*OnLargeFronts*")),
    ("a tile is finished one pivot early", PRIVATE + "elimination_tiles.h", "if constexpr (K + 2 < W)",
     "if constexpr (K + 3 < W)", KERNELS),
    # scaling and copies
    ("a column is divided by its pivot", SOURCE + "blaC_scale_low2.cpp",
     "scale_column(rows, a + 1, exceeds(pivot, pivot::Tiny) ? 1.0 / pivot : 0.0);",
     "for (int64_t i = 1; i <= rows; ++i)\n a[i] = exceeds(pivot, pivot::Tiny) ? a[i] / pivot : a[i] * 0.0;", KERNELS),
    ("a tiny pivot clears its column without a product", SOURCE + "blaC_scale_low2.cpp",
     "const double pivot = *a;", "const double pivot = *a;\n if (!exceeds(pivot, pivot::Tiny))\n"
     " for (int64_t i = 1; i <= rows; ++i)\n a[i] = 0.0;", KERNELS),
    ("the diagonal is scaled too", SOURCE + "blaC_scale_low.cpp", "scale_column(rows, a + 1, *d)",
     "scale_column(rows + 1, a, *d)", KERNELS),
    ("the last diagonal entry is read", SOURCE + "blaC_scale_low.cpp",
     "rows > 0; --rows, a += diagonal_step, ++d)\n        scale_column(rows, a + 1, *d)",
     "rows >= 0; --rows, a += diagonal_step, ++d)\n        scale_column(rows, a + 1, *const_cast<const volatile real*>(d))",
     KERNELS),
    ("the last two of a short column are left", PRIVATE + "scale_column.h", "if (n & 2) {", "if ((n & 2) != 0 && n > 3) {",
     KERNELS),
    ("a long column loses its head", PRIVATE + "columns.h", "column(j, b, a, 0, head);", "column(j, b, a, 1, head);", KERNELS),
    ("a zero factor overwrites", PRIVATE + "columns.h", "= from[i] * factor;",
     "= factor == 0.0 ? 0.0 : from[i] * factor;", KERNELS),
    ("the fixed threshold itself is accepted", SOURCE + "blaC_copydiag.cpp", "value > pivot::Tiny", "value >= pivot::Tiny",
     KERNELS),
    ("one more row is cleared", PRIVATE + "clear_lower.h", "clear(n - j, a + j * a_step + j)",
     "clear(j > 0 ? n - j + 1 : n, a + j * a_step + (j > 0 ? j - 1 : 0))", KERNELS),
    ("three of fifteen rows are not cleared", PRIVATE + "clear_lower.h", "part > 0; part /= 2", "part > 2; part /= 2",
     KERNELS),
    ("one column less is cleared", PRIVATE + "clear_lower.h", "j < end", "j + 1 < end", KERNELS),
    ("the diagonal is not reflected around, but into", SOURCE + "blaC_reflect.cpp", "r < c; ++r", "r + 1 < c; ++r",
     KERNELS),
    ("an unknown triangle reflects the lower one", SOURCE + "blaC_reflect.cpp", "else if (upper)",
     "else", KERNELS),
    ("columns of four lose a row", PRIVATE + "columns.h", "column(j, b, a, 0, Few)", "column(j, b, a, 0, Few - 1)", KERNELS),
    ("short columns are copied in part", SOURCE + "blaC_copyrect_intr.cpp", "i < rows; ++i", "i < rows - 1; ++i", KERNELS),
    ("a cut tile is stored whole", PRIVATE + "transpose.h", "height == TileOrder && width == TileOrder",
     "height == TileOrder", KERNELS),
    ("the upper triangle is added", SOURCE + "blaC_addTriBlock.cpp", "int64_t i = 0; i", "int64_t i = rows - *n; i", KERNELS),
    ("a copied NaN is quietened", SOURCE + "tovbla_vdCopyI.cpp", "patterns(y)[k * y_step] = patterns(x)[k * x_step];",
     "y[k * y_step] = x[k * x_step] + 0.0;", KERNELS),
    ("the negation is a subtraction", SOURCE + "tovbla_vdNegAddI.cpp", "x + y) ^ SignBit", "-x - y)", KERNELS),
    ("increments of one are not", PRIVATE + "walk.h", "(... || (steps != 1))",
     "(... && (steps != 1))", KERNELS),
    # products
    ("the scaled copy takes the column's factor", PRIVATE + "scaled_product.h", "b[j * b_step + l] * d[l];",
     "b[j * b_step + l] * d[j < inner ? j : l];", KERNELS),
    ("D is taken for contiguous", PRIVATE + "scaled_product.h", "const double s = d[l * d_step];", "const double s = d[l];",
     KERNELS),
    ("a product with beta = 0 is cut short", PRIVATE + "scaled_product.h", "    dgemm_(transa, transb, m, n, k,",
     "    const double zero = 0.0;\n    if (*beta == 0.0)\n        beta = &zero, alpha = *alpha == -1.0 ? &zero : alpha;\n"
     "    dgemm_(transa, transb, m, n, k,", KERNELS),
    ("an empty product is not called", PRIVATE + "scaled_product.h", "    dgemm_(transa, transb, m, n, k,",
     "    if (!empty)\n        dgemm_(transa, transb, m, n, k,", ("call_tests",)),
    ("large scratch is not given back", PRIVATE + "scaled_product.h", "    if (heap)\n        std::free(heap);", "",
     ("call_tests",)),
    ("hidden length 2", PRIVATE + "scaled_product.h", "c, ldc, 1, 1);", "c, ldc, 1, 2);", ("call_tests",)),
    ("the last block of a trapezoid is one panel wide", PRIVATE + "lower_trapezoid.h", "product(j, &rem, &rem);",
     "product(j, &rem, nb);", KERNELS),
    # Cholesky
    ("the margin itself is not refused", SOURCE + "blaC_cholupd.cpp", ">= 1.0 - tol", "> 1.0 - tol",
     ("kernel_tests", "--gtest_filter=Cholupd.Re*:Cholupd.With*")),
    ("a reciprocal replaces the division by the cosine", SOURCE + "blaC_cholupd.cpp", "(old - t[q] * xi) / c[q];",
     "(old - t[q] * xi) * (1.0 / c[q]);", KERNELS),
    ("a fused rotation", SOURCE + "blaC_cholupd.cpp", "xi = xi * c[q] - r * t[q];",
     "xi = __builtin_fma(xi, c[q], -(r * t[q]));", KERNELS),
    ("the column of a refusal counts from 0", SOURCE + "blaC_cholupd.cpp",
     "if (k < end)\n            return static_cast<int>(k + 1)", "if (k < end)\n            return static_cast<int>(k)", KERNELS),
    ("a NaN norm is not refused", SOURCE + "blaC_dchdd.cpp", "if (!(norm < 1.0))", "if (norm >= 1.0)", KERNELS),
    ("rows beyond the first block miss the first columns", SOURCE + "blaC_dchud.cpp",
     "for (int64_t i = 0; i < first;", "for (int64_t i = ColumnGroup; i < first;",
     ("kernel_tests", "--gtest_filter=Dchud*")),
    ("rows beyond the first block miss the last columns", SOURCE + "blaC_dchdd.cpp",
     "i >= 0; i -= ColumnGroup", "i > 0; i -= ColumnGroup", ("kernel_tests", "--gtest_filter=Dchdd*")),
    ("a row is not turned to its end", SOURCE + "blaC_dchdd.cpp", "k >= last", "k > last",
     ("kernel_tests", "--gtest_filter=Dchdd*")),
    ("a refused column of a small factor does not end the sweep", SOURCE + "blaC_cholupd.cpp",
     "return static_cast<int>(k + 1);\n        turn_rows", "continue;\n        turn_rows", KERNELS),
    ("a rotation in the other order", SOURCE + "blaC_dchud.cpp", "p.xi * c - s * p.element", "s * p.element - p.xi * c",
     KERNELS),
    # sparse products
    ("+ 0.0 is dropped where two entries are neighbours", PRIVATE + "sparse_scatter.h",
     "pair{xs[c], xs[c]} + 0.0)", "pair{xs[c], xs[c]})", ("kernel_tests", "--gtest_filter=*Umtv*")),
    ("+ 0.0 is dropped from single entries", PRIVATE + "sparse_scatter.h", "(value * xs[c] + 0.0)", "(value * xs[c])",
     ("kernel_tests", "--gtest_filter=*Umtv*")),
    ("Y is not cleared", PRIVATE + "sparse_scatter.h", "if (n >= 1)", "if (n > 1)", KERNELS),
    ("rows that end before they start have an entry", SOURCE + "blaC_sparse_umv.cpp", "p < p_end && q < q_end",
     "p != p_end && q < q_end", KERNELS),
    ("a few sums take one column for all", SOURCE + "blaC_sparse_umv.cpp", "x[ja[p] + k * columns]", "x[ja[p]]",
     ("kernel_tests", "--gtest_filter=SparseUmv*")),
    # frame
    ("FMA is read off a neighbouring bit", MODULE + "processor.cpp", "{r.leaf1_ecx, 12, feature::FMA}",
     "{r.leaf1_ecx, 13, feature::FMA}", FRAME),
    ("wide registers count without the operating system", MODULE + "processor.cpp", "(r.xcr0 & 6) != 6",
     "(r.xcr0 & 4) != 4", FRAME),
    ("AVX is read off a neighbouring bit", MODULE + "processor.cpp", "{r.leaf1_ecx, 28, feature::AVX}",
     "{r.leaf1_ecx, 27, feature::AVX}", FRAME),
    ("tier R is tried before tier V", PRIVATE + "tiers.h",
     "        if ((word & tier::V) == tier::V)                                                                     \\\n"
     "            return name##V args;                                                                             \\\n"
     "        if ((word & tier::R) == tier::R)                                                                     \\\n"
     "            return name##R args;                                                                             \\\n",
     "        if ((word & tier::R) == tier::R)                                                                     \\\n"
     "            return name##R args;                                                                             \\\n"
     "        if ((word & tier::V) == tier::V)                                                                     \\\n"
     "            return name##V args;                                                                             \\\n",
     FRAME),
    ("a surplus finalisation is forgiven", MODULE + "lifecycle.cpp", "    if (--module_users != 0)",
     "    if (module_users == 0 || --module_users != 0)", FRAME),
    ("the core goes down before the third component's count", MODULE + "lifecycle.cpp",
     "tally -= --third_users == 0 ? 2 : 1;", "tally -= --third_users == 0 ? 1 : 2;", FRAME),
    ("OpenBLAS is asked before MKL", MODULE + "threads.cpp", "    if (MKL_Set_Num_Threads)\n        MKL_Set",
     "    if (openblas_set_num_threads)\n        openblas_set_num_threads(count);\n    else if (MKL_Set_Num_Threads)\n"
     "        MKL_Set", ("threads_mkl_openblas_blis",)),
    # facade
    ("hidden length 2 in the facade", SOURCE + "blaC_dgemm.cpp", "c, ldc, 1, 1);", "c, ldc, 1, 2);",
     ("facade_forwarding",)),
    ("two arguments change places", SOURCE + "blaC_dtrsm.cpp", "diag, m, n,", "diag, n, m,", ("facade_forwarding",)),
    ("the convention of complex results is taken for granted", SOURCE + "blaC_zdotc.cpp", "slot.imag() == 1.0;",
     "slot.imag() >= 0.0;", ("facade_hidden",)),
    ("a constant is off by its last bit", SOURCE + "blaC_hdmcon.cpp", "0x3CA0000000000001", "0x3CA0000000000000",
     ("facade_edges", "facade_numbers", "facade_forwarding")),
    ("a negative increment starts at the first element", SOURCE + "blaC_daxpby.cpp", "x_step < 0 ? (1 - count) * x_step : 0",
     "x_step < 0 ? 0 : 0", ("facade_daxpby",)),
    # the blocked drivers
    ("the last panel is wide", PRIVATE + "panels.h", "(n + nb - 1) / nb - 1)", "n / nb - 1)", ("elimination_call_tests",)),
    ("the solve is with the transpose", SOURCE + "blaC_selim.cpp", '"R", "U", "N", "U"', '"R", "U", "T", "U"',
     ("elimination_call_tests",)),
    # what only the built library shows
    ("the upper halves of the registers are not cleared", "CMakeLists.txt", "include(cmake/fortran.cmake)",
     "set_source_files_properties(${core}/src/blaC_scale.cpp PROPERTIES COMPILE_OPTIONS -mno-vzeroupper)\n"
     "include(cmake/fortran.cmake)", ("instructions",)),
    ("products and sums are contracted", "CMakeLists.txt", "include(cmake/fortran.cmake)",
     "set_source_files_properties(${core}/src/blaC_dchud.cpp PROPERTIES COMPILE_OPTIONS \"-mfma;-ffp-contract=fast\")\n"
     "include(cmake/fortran.cmake)", ("instructions",)),
]
