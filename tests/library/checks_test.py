#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""The checks of this directory must fail on a small library with each thing that they are there to find.

    checks_test.py COMPILER
"""
import os
import subprocess
import sys
import tempfile
import unittest

import instructions_check
import symbols_check

COMPILER = "gcc"
TABLE = {"blac_k_": "VRA", "blac_single_": ""}
CLEAN = {"blac_k_": "jmp blac_k_A", "blac_k_V": "vaddpd %ymm0,%ymm1,%ymm2\nvpaddq %ymm0,%ymm1,%ymm2\nvzeroupper\nret",
         "blac_k_R": "vaddpd %ymm0,%ymm1,%ymm2\nvzeroupper\nret", "blac_k_A": "addpd %xmm0,%xmm1\nret",
         "blac_single_": "addsd %xmm0,%xmm1\nret"}


class Library(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)

    def build(self, suffix, text):
        source, library = (os.path.join(self.directory.name, name) for name in ("sample" + suffix, "sample.so"))
        with open(source, "w") as file:
            file.write(text)
        subprocess.run([COMPILER, "-w", "-shared", "-fPIC", "-nostdlib", "-Wl,--unresolved-symbols=ignore-all", "-o",
                        library, source], check=True, stderr=subprocess.DEVNULL)
        return library

    def assemble(self, **bodies):
        text = ".text\n"
        for name, body in {**CLEAN, **bodies}.items():
            scope = ".hidden" if name.split(".")[0][-1] in "VRA" else ".globl"
            text += f".globl {name}\n" if scope == ".hidden" else ""
            text += f"{scope} {name}\n.type {name},@function\n{name}:\n{body}\n.size {name},.-{name}\n"
        return self.build(".s", text + '.section .note.GNU-stack,"",@progbits\n')

    def violations(self, **bodies):
        return [why for _, _, why in instructions_check.check(self.assemble(**bodies), TABLE)[1]]


class Instructions(Library):
    def test_a_clean_library_passes(self):
        self.assertEqual(self.violations(), [])

    def test_fused_multiply_add_is_found_everywhere(self):
        fused = "vfmadd231sd %xmm0,%xmm1,%xmm2\nvfnmsub213pd %ymm0,%ymm1,%ymm2\nvfmaddsub132ps %xmm0,%xmm1,%xmm2\n"
        found = self.violations(**{name: fused + "vzeroupper\n" + body for name, body in CLEAN.items()})
        self.assertEqual(found.count("fused multiply-add"), 3 * len(CLEAN))

    def test_anything_beyond_sse2_is_found_outside_the_wide_variants(self):
        beyond = ("vaddsd %xmm0,%xmm1,%xmm2", "vmovupd (%rdi),%ymm0", "vzeroupper", "pshufb %xmm0,%xmm1",
                  "haddpd %xmm0,%xmm1", "movddup %xmm0,%xmm1", "lddqu (%rdi),%xmm0", "blendvpd %xmm0,%xmm1",
                  "roundsd $1,%xmm0,%xmm1", "pmulld %xmm0,%xmm1", "popcnt %rax,%rbx", "tzcnt %rax,%rbx",
                  "lzcnt %rax,%rbx", "andn %rax,%rbx,%rcx", "shlx %rax,%rbx,%rcx", "crc32b %al,%ebx",
                  "movbe (%rdi),%rax", "insertps $0,%xmm0,%xmm1")
        for name in ("blac_k_", "blac_k_A", "blac_single_"):
            with self.subTest(name):
                found = self.violations(**{name: "\n".join(beyond) + "\n" + CLEAN[name]})
                self.assertEqual(found.count("beyond the baseline"), len(beyond))

    def test_avx2_is_found_in_r_only(self):
        avx2 = ("vpaddq %ymm0,%ymm1,%ymm2", "vpermpd $1,%ymm0,%ymm1", "vpermq $1,%ymm0,%ymm1",
                "vbroadcastsd %xmm0,%ymm1", "vbroadcastss %xmm0,%xmm1", "vextracti128 $1,%ymm0,%xmm1",
                "vinserti128 $1,%xmm0,%ymm1,%ymm2", "vgatherdpd %ymm0,(%rdi,%xmm1,8),%ymm2",
                "vpbroadcastq %xmm0,%xmm1", "vpblendd $1,%xmm0,%xmm1,%xmm2", "vpxor %ymm0,%ymm1,%ymm2",
                "vpsllvq %xmm0,%xmm1,%xmm2", "vpcmpeqd %ymm0,%ymm1,%ymm2", "tzcnt %rax,%rbx")
        body = "\n".join(avx2) + "\nvzeroupper\nret"
        self.assertEqual(self.violations(blac_k_R=body), ["beyond AVX"] * len(avx2))
        self.assertEqual(self.violations(blac_k_V=body), [])

    def test_avx_is_allowed_in_r(self):
        avx = ("vbroadcastsd (%rdi),%ymm1", "vinsertf128 $1,%xmm0,%ymm1,%ymm2", "vpxor %xmm0,%xmm1,%xmm2",
                "vxorpd %ymm0,%ymm1,%ymm2", "vhaddpd %ymm0,%ymm1,%ymm2", "vpermilpd $1,%ymm0,%ymm1",
                "vcmpltpd %ymm0,%ymm1,%ymm2", "vcmpnge_uqpd %ymm0,%ymm1,%ymm2", "vptest %ymm0,%ymm1")
        self.assertEqual(self.violations(blac_k_R="\n".join(avx) + "\nvzeroupper\nret"), [])

    def test_bmi2_and_avx512_are_found_even_in_v(self):
        beyond = ("shlx %rax,%rbx,%rcx", "rorx $3,%rax,%rbx", "mulx %rax,%rbx,%rcx",
                "vaddpd %zmm0,%zmm1,%zmm2", "vmovupd %xmm17,(%rdi)", "kmovw %k1,%eax")
        self.assertEqual(len(self.violations(blac_k_V="\n".join(beyond) + "\n" + CLEAN["blac_k_V"])), len(beyond))

    def test_a_missing_vzeroupper_is_found_on_any_path(self):
        wide = "vmovupd (%rdi),%ymm0\n"
        for body in (wide + "ret",                                               # at a return
                     wide + "jmp blac_k_A",                                      # at a tail call
                     wide + "call blac_k_A\nvzeroupper\nret",                    # at a call
                     wide + "test %eax,%eax\nje 1f\nvzeroupper\nret\n1: ret",    # on one of two paths
                     wide + "test %eax,%eax\nje blac_k_A\nvzeroupper\nret",      # at a conditional tail call
                     "test %eax,%eax\nje 1f\n" + wide + "1: ret",                # from before a join
                     "1: test %eax,%eax\nje 2f\n" + wide + "jmp 1b\n2: ret",     # from within a loop
                     "vzeroupper\n" + wide + "ret",                              # cleared too early
                     wide + "lea 3f(%rip),%rax\njmp *%rax\n2: vzeroupper\nret\n3: ret"):  # through a table
            for name in ("blac_k_V", "blac_k_R"):
                with self.subTest(name + " " + body):
                    self.assertEqual(self.violations(**{name: body}), ["leaves with the upper halves in use"])

    def test_paths_that_clear_pass(self):
        wide = "vmovupd (%rdi),%ymm0\n"
        for body in ("test %eax,%eax\nje 1f\n" + wide + "vzeroupper\n1: ret", wide + "vzeroupper\njmp blac_k_A",
                     "1: " + wide + "dec %eax\njne 1b\nvzeroupper\nret", wide + "vzeroall\nret"):
            with self.subTest(body):
                self.assertEqual(self.violations(blac_k_V=body), [])

    def test_pieces_split_off_belong_to_their_variant(self):
        piece = "vpaddq %ymm0,%ymm1,%ymm2\nvzeroupper\nret"
        self.assertEqual(self.violations(**{"blac_k_V.part.0": piece}), [])
        self.assertIn("beyond AVX", self.violations(**{"blac_k_R.cold": piece}))
        self.assertIn("beyond the baseline", self.violations(**{"blac_k_A.part.0": piece}))
        self.assertIn("beyond the baseline", self.violations(**{"shared_helper": piece}))

    def test_local_functions_in_a_namespace_of_a_tier_belong_to_it(self):
        body = "vpaddq %ymm0,%ymm1,%ymm2\nvzeroupper\nret"
        self.assertEqual(self.violations(_ZN12_GLOBAL__N_11V4tileEv=body), [])
        self.assertIn("beyond AVX", self.violations(_ZNK12_GLOBAL__N_11R4Tile4moveEv=body))
        self.assertIn("beyond the baseline", self.violations(_ZN12_GLOBAL__N_11A4tileEv=body))
        self.assertIn("beyond the baseline", self.violations(_ZN12_GLOBAL__N_16VectorEv=body))
        self.assertIn("leaves with the upper halves in use",
                      self.violations(_ZN12_GLOBAL__N_11V4tileEv="vmovupd (%rdi),%ymm0\nret"))

    def test_a_jump_into_a_piece_carries_the_upper_halves_along(self):
        self.assertIn("leaves with the upper halves in use",
                      self.violations(**{"blac_k_V": "vmovupd (%rdi),%ymm0\njmp blac_k_V.cold", "blac_k_V.cold": "ret"}))


class Symbols(Library):
    def errors(self, text):
        return " ".join(symbols_check.check_undefined(self.build(".c", text)))

    def test_what_may_be_taken_passes(self):
        self.assertEqual(self.errors("void dgemm_(void); void *malloc(unsigned long); void blac_dgemm_(void) "
                                     "{ dgemm_(); malloc(1); }"), "")

    def test_what_may_not_be_taken_is_found(self):
        for name, kind in (("fprintf", "input or output"), ("puts", "input or output"), ("write", "input or output"),
                           ("calloc", "heap"), ("_Znwm", "heap"), ("abort", "aborts"), ("__assert_fail", "aborts"),
                           ("__cxa_guard_acquire", "C++ runtime"), ("_ZSt20__throw_length_errorPKc", "C++ runtime"),
                           ("getenv", "not on the list"), ("sqrt", "not on the list"), ("dgemv_", "not on the list")):
            with self.subTest(name):
                self.assertIn(kind, self.errors(f"void {name}(); void f(void) {{ {name}(); }}"))

    def test_code_that_runs_at_load_time_is_found(self):
        self.assertIn(".init_array", self.errors("__attribute__((constructor)) void f(void) {}"
                                                 "__attribute__((constructor)) void g(void) {}"))

    def test_kernels_and_variants_are_compared_with_the_list(self):
        library = self.assemble()
        self.assertEqual(list(symbols_check.check_kernels(library, TABLE)), [])
        for table, message in (({**TABLE, "blac_k_": "VA"}, "has variants"), ({**TABLE, "blac_single_": "VA"}, "has variants"),
                               ({**TABLE, "blac_other_": ""}, "blac_other_ is missing"), ({"blac_k_": "VRA"}, "on no list")):
            self.assertIn(message, " ".join(symbols_check.check_kernels(library, table)))


if __name__ == "__main__":
    if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        COMPILER = sys.argv.pop(1)
    unittest.main()
