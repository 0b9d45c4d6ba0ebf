#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Which instructions the library contains, variant by variant.

    instructions_check.py LIBRARY [TIERS]

Every instruction must be on the list of what its function may use: the x86-64 baseline (SSE2) outside the variants
*V and *R; the AVX encodings of SSE to SSE4.2, and AVX, in *R; AVX2, F16C, BMI1, LZCNT and POPCNT on top in *V. Fused
multiply-add, BMI2 and AVX-512 are on no list, nor is anything unknown.

On every path through a variant, the upper halves of the wide registers must be cleared between the last instruction
that names a ymm register and any return, call or jump out of the variant. Jumps through a table are taken to lead to
every jump target and every address that nothing falls into, of the same variant.

A variant is a hidden function <entry point>V, R or A of a kernel that TIERS gives that variant, with the pieces that
compilers split off (.part.0, .cold, .constprop.0 ...), or a local function in a namespace V, R or A, which several
variants of that tier may call.
"""
import collections
import os
import re
import sys

import disassembly

# --- What there is -------------------------------------------------------------------------------------------------
CONDITIONS = "a ae b be c e g ge l le na nae nb nbe nc ne ng nge nl nle no np ns nz o p pe po s z".split()


def suffixed(names):
    """AT&T integer mnemonics with and without their width."""
    return {name + width for name in names.split() for width in ("", "b", "w", "l", "q")}


INTEGER = (
    suffixed("mov add sub adc sbb and or xor not neg inc dec cmp test lea push pop shl shr sal sar rol ror rcl rcr shld "
             "shrd imul mul idiv div xchg xadd cmpxchg bt bts btr btc bsf bsr bswap call jmp ret leave nop stos movs cmps "
             "scas lods")
    | {"j" + c for c in CONDITIONS} | {"set" + c for c in CONDITIONS}
    | {"cmov" + c + w for c in CONDITIONS for w in ("", "w", "l", "q")}
    | set("movabs movabsq movsbw movsbl movsbq movswl movswq movslq movzbw movzbl movzbq movzwl movzwq cltq cqto cltd cwtl "
          "cwtd cbtw jrcxz jecxz endbr64 hlt ud2 int3 cld std pause cpuid xgetbv rdtsc mfence lfence sfence movnti "
          "movntil movntiq prefetcht0 prefetcht1 prefetcht2 prefetchnta ldmxcsr stmxcsr syscall".split()))

PACKED_AND_SCALAR = {op + form for op in "add sub mul div sqrt min max".split() for form in ("ps", "ss", "pd", "sd")}
COMPARES = {"cmp" + p + form for form in ("ps", "ss", "pd", "sd")
            for p in ("", "eq", "lt", "le", "unord", "neq", "nlt", "nle", "ord")}
SSE2_FLOAT = PACKED_AND_SCALAR | COMPARES | {op + form for op in "and andn or xor unpckl unpckh shuf".split()
                                             for form in ("ps", "pd")} | set(
    "movaps movups movapd movupd movss movsd movlps movhps movlpd movhpd movhlps movlhps movmskps movmskpd movntps movntpd "
    "ucomiss ucomisd comiss comisd rcpps rcpss rsqrtps rsqrtss cvtss2sd cvtsd2ss cvtps2pd cvtpd2ps cvtdq2pd cvtdq2ps "
    "cvtpd2dq cvtps2dq cvttpd2dq cvttps2dq cvtsi2sd cvtsi2sdl cvtsi2sdq cvtsi2ss cvtsi2ssl cvtsi2ssq cvtsd2si cvtss2si "
    "cvttsd2si cvttss2si".split())
SSE2_INTEGER = set(
    "movd movq movdqa movdqu movntdq maskmovdqu pmovmskb paddb paddw paddd paddq psubb psubw psubd psubq paddsb paddsw "
    "paddusb paddusw psubsb psubsw psubusb psubusw pmullw pmulhw pmulhuw pmuludq pmaddwd pand pandn por pxor pcmpeqb "
    "pcmpeqw pcmpeqd pcmpgtb pcmpgtw pcmpgtd psllw pslld psllq pslldq psrlw psrld psrlq psrldq psraw psrad packsswb packssdw "
    "packuswb punpcklbw punpcklwd punpckldq punpcklqdq punpckhbw punpckhwd punpckhdq punpckhqdq pshufd pshuflw pshufhw "
    "pextrw pinsrw pminub pmaxub pminsw pmaxsw pavgb pavgw psadbw".split())
SSE42_FLOAT = set("addsubps addsubpd haddps haddpd hsubps hsubpd movddup movshdup movsldup blendps blendpd blendvps "
                  "blendvpd dpps dppd roundps roundpd roundss roundsd extractps insertps".split())
SSE42_INTEGER = set(
    "lddqu pabsb pabsw pabsd phaddw phaddd phsubw phsubd pmaddubsw pmulhrsw pshufb psignb psignw psignd palignr pblendw "
    "pblendvb pmulld pmuldq pminsb pminsd pminuw pminud pmaxsb pmaxsd pmaxuw pmaxud pmovsxbw pmovsxbd pmovsxbq pmovsxwd "
    "pmovsxwq pmovsxdq pmovzxbw pmovzxbd pmovzxbq pmovzxwd pmovzxwq pmovzxdq pcmpeqq pcmpgtq packusdw pextrb pextrd pextrq "
    "pinsrb pinsrd pinsrq movntdqa ptest phminposuw mpsadbw pcmpestri pcmpestrm pcmpistri pcmpistrm".split())
AVX_COMPARES = {"vcmp" + p + form for form in ("ps", "ss", "pd", "sd") for p in (
    "eq_uq nge ngt false neq_oq ge gt true eq_os lt_oq le_oq unord_s neq_us nlt_uq nle_uq ord_s eq_us nge_uq ngt_uq "
    "false_os neq_os ge_oq gt_oq true_us").split()}

BASELINE = INTEGER | SSE2_FLOAT | SSE2_INTEGER
AVX_FLOAT = {"v" + name for name in SSE2_FLOAT | SSE42_FLOAT} | AVX_COMPARES | set(
    "vbroadcastss vbroadcastsd vbroadcastf128 vinsertf128 vextractf128 vperm2f128 vpermilps vpermilpd vmaskmovps vmaskmovpd "
    "vtestps vtestpd vptest vlddqu vmovdqa vmovdqu vmovntdq vzeroupper vzeroall".split())  # any width
AVX_INTEGER = {"v" + name for name in SSE2_INTEGER | SSE42_INTEGER}  # 128 bits; 256 are AVX2
AVX2 = set(
    "vbroadcasti128 vinserti128 vextracti128 vperm2i128 vpermd vpermps vpermq vpermpd vpblendd vpbroadcastb vpbroadcastw "
    "vpbroadcastd vpbroadcastq vpmaskmovd vpmaskmovq vpsllvd vpsllvq vpsrlvd vpsrlvq vpsravd vgatherdps vgatherdpd "
    "vgatherqps vgatherqpd vpgatherdd vpgatherdq vpgatherqd vpgatherqq".split())
BMI1_AND_COUNTS = suffixed("andn bextr blsi blsmsk blsr tzcnt lzcnt popcnt")
F16C = {"vcvtph2ps", "vcvtps2ph"}


def forbidden(instruction, tier):
    """Why the instruction may not stand in a function of this tier ("V", "R" or "A"), or None."""
    name, operands = instruction.mnemonic, instruction.operands
    wide = "%ymm" in operands
    if re.match(r"vfn?m(add|sub)", name):
        return "fused multiply-add"
    if "%zmm" in operands or "%k" in operands or re.search(r"%[xy]mm(1[6-9]|2\d|3[01])\b", operands):
        return "AVX-512"
    if re.search(r"%(mm\d|st)", operands):
        return "MMX or x87"
    if name in INTEGER and not re.search(r"%[xy]mm", operands) or tier == "A" and name in BASELINE:
        return None
    if tier == "A":
        return "beyond the baseline"
    broadcast_of_register = name in ("vbroadcastss", "vbroadcastsd") and operands.startswith("%xmm")
    if name in AVX_FLOAT and not broadcast_of_register or name in AVX_INTEGER and not wide:
        return None
    if tier == "R":
        return "beyond AVX"
    if broadcast_of_register or name in AVX_INTEGER or name in AVX2 | BMI1_AND_COUNTS | F16C:
        return None
    return "SSE encoding beside AVX, or not on the list of tier V"


# --- What belongs together -----------------------------------------------------------------------------------------
def read_tiers(path):
    table = {}
    with open(path) as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                kernel, tiers = line.split()
                table[kernel] = "" if tiers == "none" else tiers
    return table


def variant_of(name, table):
    """The variant that a function belongs to (blac_scale_V), or None."""
    stem = name.split(".")[0]
    local = re.match(r"_ZNK?12_GLOBAL__N_11([VRA])\d", stem)
    if local:
        return stem + " of tier " + local.group(1)
    return stem if stem[-1:] in "VRA" and stem[-1:] in table.get(stem[:-1], "") else None


def group(path, table):
    """{variant or None: {address: instruction}}, and one function name per address."""
    symbols = disassembly.functions(path)
    starts = sorted(symbols)
    groups, names = collections.defaultdict(dict), {}
    position = -1
    for i in disassembly.instructions(path):
        while position + 1 < len(starts) and starts[position + 1] <= i.address:
            position += 1
        start = starts[position] if position >= 0 else None
        size, aliases = symbols.get(start, (0, []))
        inside = start is not None and (i.address < start + size or size == 0)
        # Code under two names must satisfy the more modest one.
        variants = [variant_of(name, table) for name in aliases] if inside else [None]
        groups[None if None in variants else max(variants, key=lambda v: "VRA".index(v[-1]))][i.address] = i
        names[i.address] = aliases[0] if inside else "(no function)"
    return groups, names


# --- Upper halves ----------------------------------------------------------------------------------------------------
def dirty_exits(code):
    """Instructions through which {address: instruction} may be left with upper halves in use."""
    addresses = sorted(code)
    following = dict(zip(addresses, addresses[1:]))

    def ends_path(i):
        return i.mnemonic in ("jmp", "jmpq", "ret", "retq", "ud2", "hlt")

    targets = {i.target for i in code.values() if i.mnemonic.startswith("j") and i.target in code}
    orphans = {following[a] for a in addresses if a in following and ends_path(code[a])}
    state = {addresses[0]: False}  # may the upper halves be in use before this instruction?
    work, found = [addresses[0]], set()
    # Pieces that are called, not jumped to, begin with clean halves, as every function does.
    for a in orphans - targets:
        state.setdefault(a, False)
        work.append(a)
    while work:
        a = work.pop()
        i, dirty = code[a], state[a]
        if i.mnemonic in ("vzeroupper", "vzeroall"):
            dirty = False
        elif "%ymm" in i.operands:
            dirty = True
        successors = []
        if i.mnemonic.startswith("ret"):
            if dirty:
                found.add(a)
        elif i.mnemonic.startswith("call"):
            if dirty:
                found.add(a)
            successors = [following.get(a)]
        elif i.mnemonic.startswith("jmp"):
            if i.target in code:
                successors = [i.target]
            elif i.target is None and i.operands.startswith("*"):  # a table, or a call through a pointer
                successors = list(targets | orphans)
                if "(%rip)" in i.operands and dirty:
                    found.add(a)
            elif dirty:
                found.add(a)
        elif i.mnemonic.startswith("j"):
            successors = [i.target if i.target in code else None, following.get(a)]
            if i.target not in code and dirty:
                found.add(a)
        elif not ends_path(i):
            successors = [following.get(a)]
        for s in successors:
            if s is not None and (s not in state or dirty and not state[s]):
                state[s] = dirty or state.get(s, False)
                work.append(s)
    return sorted(found)


def check(path, table):
    groups, names = group(path, table)
    errors = []
    for variant, code in groups.items():
        for i in code.values():
            why = forbidden(i, variant[-1] if variant else "A")
            if why:
                errors.append((names[i.address], i, why))
        if variant and any("%ymm" in i.operands for i in code.values()):
            errors += [(names[a], code[a], "leaves with the upper halves in use") for a in dirty_exits(code)]
    return groups, errors


def main():
    library = sys.argv[1]
    table = read_tiers(sys.argv[2] if len(sys.argv) > 2 else
                       os.path.join(os.path.dirname(os.path.abspath(__file__)), "tiers.txt"))
    groups, errors = check(library, table)
    for function, i, why in errors[:40]:
        print(f"{function}: {i.address:x}: {i.mnemonic} {i.operands}: {why}")
    count = {tier: sum(1 for v in groups if v and v[-1] == tier) for tier in "VRA"}
    wide = sum(1 for v, code in groups.items() if v and any("%ymm" in i.operands for i in code.values()))
    print(f"{sum(map(len, groups.values()))} instructions, variants {count}, {wide} of them with wide registers, "
          f"{len(errors)} violations")
    if not groups.get(None) or not count["V"]:
        print("this does not look like the library: no variants found (stripped?)")
        return 1
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
