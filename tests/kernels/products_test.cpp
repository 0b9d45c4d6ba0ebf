// SPDX-License-Identifier: BSD-3-Clause
#include "TOVBlaModule.h"
#include "bits.h"
#include "random.h"
#include "reference.h"
#include "sweep.h"
#include "tiers.h"

#include <pthread.h>

using namespace support;

namespace {

struct ScaledProduct : ::testing::Test
{
    ScaledProduct() { blaC_set_num_threads(1); }
};

/// The operands of one product, the result twice over.
struct Operands
{
    int m, n, k, lda, ldb, ldc, ldd;
    char transa, transb;
    Guarded<double> a, b, d, vector, expected, actual;

    Operands(int m_, int n_, int k_, char transa_, char transb_, std::size_t gap, Data data)
        : m(m_), n(n_), k(k_), lda((transa_ == 'N' ? m_ : k_) + 1), ldb((transb_ == 'N' ? k_ : n_) + 2),
          ldc(m_ + 3), ldd(k_ + 1), transa(transa_), transb(transb_),
          a(transa_ == 'N' ? extent(m_, k_, lda) : extent(k_, m_, lda), gap),
          b(transb_ == 'N' ? extent(k_, n_, ldb) : extent(n_, k_, ldb), gap), d(extent(k_, k_, ldd), gap),
          vector(k_, gap), expected(extent(m_, n_, ldc), gap), actual(extent(m_, n_, ldc), gap)
    {
        auto random = generator(static_cast<std::uint64_t>(m_ + 100 * n_ + 10000 * k_));
        fill_matrix(a, transa == 'N' ? m : k, transa == 'N' ? k : m, lda, random, data);
        fill_matrix(b, transb == 'N' ? k : n, transb == 'N' ? n : k, ldb, random, data);
        for (int l = 0; l < k; ++l) { // the rest of d is never read: its canaries are NaN
            vector.set(l, draw(random, data));
            d.set(l * (int64_t{ldd} + 1), vector.get(l));
        }
        fill_matrix(expected, m, n, ldc, random, data);
        for (int64_t i = 0; i < expected.size(); ++i)
            actual.set(i, expected.get(i));
    }
};

using std::int64_t;

TEST_F(ScaledProduct, GivesTheBitsOfDgemmOnTheRoundedFactor)
{
    on_every_tier([] {
        for (char transa : {'N', 'T'})
            for (char transb : {'N', 'T', 't'})
                for (int n : {1, 3, 8, 17})
                    for (int k : {1, 2, 5, 8, 9, 16, 17, 33})
                        for (std::size_t gap : {0, 8})
                            for (Data data : {Data::Ordinary, Data::Special}) {
                                Operands o(7, n, k, transa, transb == 't' ? 'T' : transb, gap, data);
                                const double alpha = -0.5, beta = 2.0;
                                reference::dgemm_scaled(transa, transb, o.m, n, k, alpha, o.a, o.lda, o.b,
                                                        o.ldb, beta, o.expected, o.ldc, o.d, o.ldd);
                                blac_dgemm_scaled_(&transa, &transb, &o.m, &n, &k, &alpha, o.a, &o.lda, o.b,
                                                   &o.ldb, &beta, o.actual, &o.ldc, o.d, &o.ldd);
                                ASSERT_TRUE(same_memory(o.expected, o.actual))
                                    << transa << transb << " n " << n << ", k " << k;

                                Operands v(7, n, k, transa, transb == 't' ? 'T' : transb, gap, data);
                                blac_dgemm_scaled2_(&transa, &transb, &v.m, &n, &k, &alpha, v.a, &v.lda, v.b,
                                                    &v.ldb, &beta, v.actual, &v.ldc, v.vector);
                                ASSERT_TRUE(same_memory(o.expected, v.actual))
                                    << "vector form, " << transa << transb << " n " << n << ", k " << k;
                            }
    });
}

TEST_F(ScaledProduct, ALeadingDimensionOfZeroReadsTheDiagonalAsAVector)
{
    on_every_tier([] {
        for (char transb : {'N', 'T'}) {
            Operands x(6, 5, 9, 'N', transb, 0, Data::Ordinary), y(6, 5, 9, 'N', transb, 0, Data::Ordinary);
            const double one = 1.0;
            const int zero = 0;
            blac_dgemm_scaled_("N", &transb, &x.m, &x.n, &x.k, &one, x.a, &x.lda, x.b, &x.ldb, &one, x.actual,
                               &x.ldc, x.vector, &zero);
            blac_dgemm_scaled2_("N", &transb, &y.m, &y.n, &y.k, &one, y.a, &y.lda, y.b, &y.ldb, &one,
                                y.actual, &y.ldc, y.vector);
            EXPECT_TRUE(same_memory(y.actual, x.actual));
        }
    });
}

TEST_F(ScaledProduct, ZeroAndTinyDiagonalEntriesAreUsedAsTheyAre)
{
    on_every_tier([] {
        const int m = 1, n = 1, k = 3, ld = 1;
        const double a[] = {1.0, 1.0, 1.0}, b[] = {3.0, 1e40, 7.0}, d[] = {0.0, 1e-40, -0.0}, one = 1.0,
                     zero = 0.0;
        double c = 5.0;
        blac_dgemm_scaled2_("N", "T", &m, &n, &k, &one, a, &ld, b, &ld, &zero, &c, &ld, d);
        EXPECT_EQ(c, 1e40 * 1e-40);
        const double inf[] = {INFINITY, 0.0, 0.0};
        blac_dgemm_scaled2_("N", "T", &m, &n, &k, &one, a, &ld, inf, &ld, &zero, &c, &ld, d);
        EXPECT_TRUE(std::isnan(c)) << "infinity times a zero of D is formed";
    });
}

TEST_F(ScaledProduct, TheLowerTrapezoidIsDgemmBlockByBlockAndNothingAboveIsTouched)
{
    on_every_tier([] {
        for (int n : {1, 2, 5, 7, 12, 31})
            for (int nb : {1, 2, 3, 5, 8, 31, 40})
                for (int k : {1, 4, 9}) {
                    Operands o(n, n, k, 'N', 'T', 8, Data::Ordinary);
                    const double alpha = -1.0, beta = 1.0;
                    reference::dsyrk_scaled(nb, n, k, alpha, o.a, o.lda, o.b, o.ldb, beta, o.expected, o.ldc,
                                            o.vector, 0);
                    blac_dsyrk_scaled_(&nb, &n, &k, &alpha, o.a, &o.lda, o.b, &o.ldb, &beta, o.actual, &o.ldc,
                                       o.vector);
                    ASSERT_TRUE(same_memory(o.expected, o.actual))
                        << "n " << n << ", nb " << nb << ", k " << k;

                    Operands s(n, n, k, 'N', 'T', 8, Data::Ordinary), t(n, n, k, 'N', 'T', 8, Data::Ordinary);
                    reference::dsyrk_scaled(nb, n, k, alpha, s.a, s.lda, s.a, s.lda, beta, s.expected, s.ldc,
                                            s.d, s.ldd);
                    blac_dsyrk_scaled2_(&nb, &n, &k, &alpha, t.a, &t.lda, &beta, t.actual, &t.ldc, t.d,
                                        &t.ldd);
                    ASSERT_TRUE(same_memory(s.expected, t.actual))
                        << "n " << n << ", nb " << nb << ", k " << k;
                }
    });
}

TEST_F(ScaledProduct, EntriesAboveTheDiagonalBlocksAreNeitherReadNorWritten)
{
    on_every_tier([] {
        const int n = 9, nb = 4, k = 3;
        Operands o(n, n, k, 'N', 'T', 0, Data::Ordinary);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < j / nb * nb; ++i)
                o.actual.set(i + j * o.ldc, std::bit_cast<double>(Canary));
        const double one = 1.0;
        blac_dsyrk_scaled_(&nb, &n, &k, &one, o.a, &o.lda, o.b, &o.ldb, &one, o.actual, &o.ldc, o.vector);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i) {
                if (i < j / nb * nb)
                    EXPECT_EQ(bits(o.actual.get(i + j * o.ldc)), Canary) << i << ' ' << j;
                else
                    EXPECT_FALSE(std::isnan(o.actual.get(i + j * o.ldc))) << i << ' ' << j;
            }
    });
}

/// Runs work on a thread with a stack of so many bytes.
void on_stack_of(std::size_t bytes, void* (*work)(void*), void* argument)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, argument), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST_F(ScaledProduct, LargeProductsOverflowNoThreadStack)
{
    on_every_tier([] {
        struct Job
        {
            int m = 8, n = 4000, k = 2000, ldd = 0;
            std::vector<double> a, b, c, d;
        } job;
        auto random = generator(1);
        for (auto [v, size] :
             {std::pair{&job.a, 8 * 2000}, {&job.b, 4000 * 2000}, {&job.c, 8 * 4000}, {&job.d, 2000}})
            for (int i = 0; i < size; ++i)
                v->push_back(ordinary(random));
        std::vector<double> expected = job.c;
        reference::dgemm_scaled('N', 'T', job.m, job.n, job.k, 1.0, job.a.data(), job.m, job.b.data(), job.n,
                                1.0, expected.data(), job.m, job.d.data(), 0);
        const std::vector<double> before = job.c;
        for (std::size_t stack : {std::size_t{8} << 20, std::size_t{256} << 10}) {
            job.c = before;
            on_stack_of(
                stack,
                [](void* p) -> void* {
                    Job& j = *static_cast<Job*>(p);
                    const double one = 1.0;
                    blac_dgemm_scaled_("N", "T", &j.m, &j.n, &j.k, &one, j.a.data(), &j.m, j.b.data(), &j.n,
                                       &one, j.c.data(), &j.m, j.d.data(), &j.ldd);
                    return nullptr;
                },
                &job);
            EXPECT_EQ(job.c, expected) << "stack of " << stack << " bytes";
        }
    });
}

} // namespace
