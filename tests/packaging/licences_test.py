# SPDX-License-Identifier: BSD-3-Clause
"""licences_test.py FILE...: what the libraries and programs that we distribute make the loader load, directly and
through others, comes from packages whose licence is listed here and is still what Debian's copyright file says.

licences_test.py --self-test: a program that loads CHOLMOD is refused."""
import pathlib
import re
import subprocess
import sys
import tempfile

# The system's own: the C library (LGPL), and GCC's run-time libraries, under the GPL with the exception for run-time
# libraries, which exists so that programs under any licence may use them.
SYSTEM = {"libc6", "libgcc-s1", "libstdc++6", "libgfortran5", "libquadmath0", "libgomp1"}

# Any BLAS and LAPACK: the user's choice, behind names that all of them have.
BLAS = {"libopenblas0-pthread", "libopenblas0-serial", "libopenblas0-openmp", "libblas3", "liblapack3",
        "libblis4-pthread", "libblis4-serial", "libblis4-openmp"}

# Package: the files that it is built from, as its copyright file names them, and their licence. Of METIS, two files of
# its GKlib are the C library's sort and option reader, LGPL-2.1+; as a shared library of the system it meets those terms.
PERMISSIVE = {
    "libmetis5": ("*", "Apache-2.0"),
    "libamd2": ("AMD/*", "BSD-3-clause"),
    "libtbb12": ("*", "Apache-2.0"),
    "libsuitesparseconfig5": ("SuiteSparse_config/*", "permissive-2"),
}


def loaded(file):
    """The files that the loader maps for this one."""
    listing = subprocess.run(["ldd", file], check=True, capture_output=True, text=True).stdout
    assert "not found" not in listing, listing
    return {pathlib.Path(path).resolve() for path in re.findall(r"(/\S+) \(0x", listing)}


def packages_of(paths):
    """{file: package}; a package may know a file by the name without /usr."""
    names = [name for path in paths for name in (str(path), str(path).removeprefix("/usr"))]
    found = subprocess.run(["dpkg", "-S", *names], capture_output=True, text=True).stdout if names else ""
    known = {line.split(": ")[1]: line.split(":")[0] for line in found.splitlines()}
    return {path: known.get(str(path), known.get(str(path).removeprefix("/usr"))) for path in paths}


def licence(package, files):
    """The licence of a paragraph of the package's copyright file."""
    text = pathlib.Path(f"/usr/share/doc/{package}/copyright").read_text()
    for paragraph in re.split(r"\n\s*\n", text):
        named = re.search(r"^Files:((?:.|\n )*)", paragraph, re.M)
        if named and files in named[1].split():
            return re.search(r"^License: (.*)", paragraph, re.M)[1]
    return None


def complaints(files, ours):
    loads = {path: file for file in files for path in loaded(file) - ours}
    for path, package in packages_of(sorted(loads)).items():
        if package in SYSTEM or package in BLAS:
            continue
        if package not in PERMISSIVE:
            yield f"{loads[path]} loads {path} of {package}, whose licence is not listed here"
        elif licence(package, PERMISSIVE[package][0]) != PERMISSIVE[package][1]:
            yield f"{package}: the licence is {licence(package, PERMISSIVE[package][0])}, not {PERMISSIVE[package][1]}"


def self_test():
    with tempfile.TemporaryDirectory() as scratch:
        program = scratch + "/program"
        subprocess.run(["cc", "-x", "c", "-", "-o", program, "-Wl,--no-as-needed", "-lcholmod"], check=True, text=True,
                       input="int main(void) { return 0; }")
        found = list(complaints([program], set()))
    assert any("libcholmod" in line for line in found), found
    assert any("libcamd" in line for line in found), found  # what CHOLMOD loads in turn


if __name__ == "__main__":
    if sys.argv[1] == "--self-test":
        self_test()
        sys.exit()
    ours = {pathlib.Path(file).resolve() for file in sys.argv[1:]}
    wrong = list(complaints(sys.argv[1:], ours))
    print("\n".join(wrong) or f"{len(ours)} files load nothing of another licence")
    sys.exit(bool(wrong))
