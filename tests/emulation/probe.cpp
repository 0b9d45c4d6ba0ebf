// SPDX-License-Identifier: BSD-3-Clause
// Executes one instruction of each kind and prints for each whether the processor claims the feature and
// whether the instruction ran: on an emulated processor, what the model lacks must not run.
#include <csetjmp>
#include <csignal>
#include <cstdio>

static sigjmp_buf after;

static void illegal_instruction(int)
{
    siglongjmp(after, 1);
}

#define PROBE(feature, name, text)                                                                           \
    if (sigsetjmp(after, 1) == 0) {                                                                          \
        __asm__ volatile(text : : "D"(data) : "rax", "rcx", "xmm0", "xmm1", "xmm2", "cc", "memory");         \
        report(feature, name, __builtin_cpu_supports(feature), true);                                        \
    } else {                                                                                                 \
        report(feature, name, __builtin_cpu_supports(feature), false);                                       \
    }

static void report(const char* feature, const char* name, bool claimed, bool ran)
{
    std::printf("%s %s %s %s\n", feature, name, claimed ? "claimed" : "absent", ran ? "ran" : "illegal");
}

int main()
{
    alignas(32) static double data[16] = {};
    std::signal(SIGILL, illegal_instruction);
    PROBE("sse2", "addpd", "addpd %%xmm0,%%xmm1")
    PROBE("sse3", "haddpd", "haddpd %%xmm0,%%xmm1")
    PROBE("sse3", "movddup", "movddup %%xmm0,%%xmm1")
    PROBE("ssse3", "pshufb", "pshufb %%xmm0,%%xmm1")
    PROBE("sse4.1", "roundsd", "roundsd $1,%%xmm0,%%xmm1")
    PROBE("sse4.1", "pmulld", "pmulld %%xmm0,%%xmm1")
    PROBE("sse4.2", "pcmpgtq", "pcmpgtq %%xmm0,%%xmm1")
    PROBE("popcnt", "popcnt", "popcnt %%rdi,%%rax")
    PROBE("avx", "vaddsd", "vaddsd %%xmm0,%%xmm1,%%xmm2")
    PROBE("avx", "vmovupd", "vmovupd (%%rdi),%%ymm0\n\tvzeroupper")
    PROBE("avx", "vaddpd", "vaddpd %%ymm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("avx", "vbroadcastsd_memory", "vbroadcastsd (%%rdi),%%ymm0\n\tvzeroupper")
    PROBE("avx", "vinsertf128", "vinsertf128 $1,%%xmm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("f16c", "vcvtph2ps", "vcvtph2ps %%xmm0,%%xmm1")
    PROBE("fma", "vfmadd231pd", "vfmadd231pd %%xmm0,%%xmm1,%%xmm2")
    PROBE("bmi", "andn", "andn %%rdi,%%rdi,%%rax")
    PROBE("bmi2", "shlx", "shlx %%rdi,%%rdi,%%rax")
    PROBE("avx2", "vpaddq", "vpaddq %%ymm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("avx2", "vpxor", "vpxor %%ymm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("avx2", "vpermpd", "vpermpd $1,%%ymm0,%%ymm1\n\tvzeroupper")
    PROBE("avx2", "vpermq", "vpermq $1,%%ymm0,%%ymm1\n\tvzeroupper")
    PROBE("avx2", "vextracti128", "vextracti128 $1,%%ymm0,%%xmm1\n\tvzeroupper")
    PROBE("avx2", "vinserti128", "vinserti128 $1,%%xmm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("avx2", "vbroadcastsd_register", "vbroadcastsd %%xmm0,%%ymm1\n\tvzeroupper")
    PROBE("avx2", "vpbroadcastq", "vpbroadcastq %%xmm0,%%xmm1")
    PROBE("avx2", "vpblendd", "vpblendd $1,%%xmm0,%%xmm1,%%xmm2")
    PROBE("avx2", "vpsllvq", "vpsllvq %%xmm0,%%xmm1,%%xmm2")
    PROBE("avx2", "vpcmpeqq", "vpcmpeqq %%ymm0,%%ymm1,%%ymm2\n\tvzeroupper")
    PROBE("avx2", "vpmovzxdq", "vpmovzxdq %%xmm0,%%ymm1\n\tvzeroupper")
    PROBE("avx2", "vgatherqpd",
          "vxorpd %%xmm0,%%xmm0,%%xmm0\n\tvxorpd %%xmm1,%%xmm1,%%xmm1\n\t"
          "vgatherqpd %%xmm0,(%%rdi,%%xmm1,8),%%xmm2")
    return 0;
}
