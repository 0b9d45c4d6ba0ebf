// SPDX-License-Identifier: BSD-3-Clause
#include "peers.h"

#include <Eigen/Cholesky>
#include <Eigen/LU>

namespace bench {
namespace {

using Matrix = Eigen::Map<Eigen::MatrixXd, 0, Eigen::OuterStride<>>;
using ConstMatrix = Eigen::Map<const Eigen::MatrixXd, 0, Eigen::OuterStride<>>;
using Strided = Eigen::Ref<Eigen::MatrixXd, 0, Eigen::OuterStride<>>;

} // namespace

void eigen_llt(int n, double* a, int lda)
{
    Matrix matrix(a, n, n, Eigen::OuterStride<>(lda));
    Eigen::LLT<Strided> llt(matrix);
}

void eigen_lu(int n, double* a, int lda)
{
    Matrix matrix(a, n, n, Eigen::OuterStride<>(lda));
    Eigen::PartialPivLU<Strided> lu(matrix);
}

void eigen_rank_update(int n, double* l, int ldl, const double* x)
{
    Matrix matrix(l, n, n, Eigen::OuterStride<>(ldl));
    Eigen::internal::llt_inplace<double, Eigen::Lower>::rankUpdate(
        matrix, Eigen::Map<const Eigen::VectorXd>(x, n), 1.0);
}

void eigen_transpose(int m, int n, const double* a, int lda, double* b, int ldb)
{
    Matrix(b, m, n, Eigen::OuterStride<>(ldb)) = ConstMatrix(a, n, m, Eigen::OuterStride<>(lda)).transpose();
}

void eigen_add_transposed(int m, int n, double* a, int lda, const double* b, int ldb)
{
    Matrix(a, m, n, Eigen::OuterStride<>(lda)) += ConstMatrix(b, n, m, Eigen::OuterStride<>(ldb)).transpose();
}

} // namespace bench
