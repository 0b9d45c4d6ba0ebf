// SPDX-License-Identifier: BSD-3-Clause
// Prints what a process gets that loads the module here and now: its processor tier, the BLAS and LAPACK
// files in use and how they return complex values, and who controls the threads. All of it is looked up by
// name in the running process, as the dynamic linker does it for the module.
#include "TOVBlaModule.h"
#include "processor.h"
#include "standard_output.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string>
#include <vector>

namespace {

const char* const help = R"(usage: bla_info [--json]

Prints the version of the module, the features of the processor and the tier that the kernels run, the BLAS and
LAPACK files in use in this process, how each returns complex values, and the number of threads.

  --json      the same as one JSON object
  --version   the version of the program
  --help      this text

Exit status 0; 1 where the output cannot be written, 2 for an unknown option.

Another BLAS for the same binary: LD_LIBRARY_PATH=/path/of/its/libblas.so.3 bla_info
)";

/// The file that defines a name in this process, symbolic links resolved; empty if none does.
std::string file_of(const char* name)
{
    void* const address = dlsym(RTLD_DEFAULT, name);
    Dl_info info;
    if (!address || !dladdr(address, &info))
        return {};
    char path[PATH_MAX];
    return realpath(info.dli_fname, path) ? path : info.dli_fname;
}

// The probes are those of blac_zdotc_ and blac_zladiv_: both kinds of library survive the call in the
// hidden-argument form, and only the hidden-argument kind writes to the slot.
const char* convention(bool slot_written)
{
    return slot_written ? "hidden argument" : "registers";
}

const char* convention_of_zdotc()
{
    using Zdotc = void (*)(double*, const int*, const double*, const int*, const double*, const int*);
    const auto zdotc = reinterpret_cast<Zdotc>(dlsym(RTLD_DEFAULT, "zdotc_"));
    if (!zdotc)
        return "no zdotc_";
    double slot[2] = {0, 1};
    const double empty[2] = {};
    const int n = 0, step = 1;
    zdotc(slot, &n, empty, &step, empty, &step);
    return convention(slot[1] != 1);
}

const char* convention_of_zladiv()
{
    using Zladiv = void (*)(double*, const double*, const double*);
    const auto zladiv = reinterpret_cast<Zladiv>(dlsym(RTLD_DEFAULT, "zladiv_"));
    if (!zladiv)
        return "no zladiv_";
    double slot[2] = {7, 5};
    const double x[2] = {6, 0}, y[2] = {2, 0};
    zladiv(slot, x, y);
    return convention(slot[1] != 5);
}

std::vector<std::string> features_of(std::uint32_t word)
{
    const struct
    {
        std::uint32_t bit;
        const char* name;
    } all[] = {
        {feature::FPU, "FPU"},      {feature::CMOV, "CMOV"},     {feature::MMX, "MMX"},
        {feature::FXSAVE, "FXSR"},  {feature::SSE, "SSE"},       {feature::SSE2, "SSE2"},
        {feature::SSE3, "SSE3"},    {feature::SSSE3, "SSSE3"},   {feature::SSE41, "SSE4.1"},
        {feature::SSE42, "SSE4.2"}, {feature::POPCNT, "POPCNT"}, {feature::F16C, "F16C"},
        {feature::AVX, "AVX"},      {feature::FMA, "FMA"},       {feature::BMI, "BMI"},
        {feature::LZCNT, "LZCNT"},  {feature::AVX2, "AVX2"},
    };
    std::vector<std::string> names;
    for (const auto& f : all)
        if (word & f.bit)
            names.push_back(f.name);
    return names;
}

/// The first of these that is there controls the threads, in the order of threads.cpp.
const char* thread_control()
{
    for (const char* name : {"MKL_Set_Num_Threads", "openblas_set_num_threads", "bli_thread_set_num_threads"})
        if (dlsym(RTLD_DEFAULT, name))
            return name;
    return nullptr;
}

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (const char c : text) {
        char escape[8];
        if (c == '"' || c == '\\')
            (result += '\\') += c;
        else if (static_cast<unsigned char>(c) < ' ') {
            std::snprintf(escape, sizeof escape, "\\u%04x", c);
            result += escape;
        } else
            result += c;
    }
    return result + '"';
}

std::string joined(const std::vector<std::string>& words, const char* between)
{
    std::string result;
    for (const std::string& word : words)
        result += (result.empty() ? "" : between) + word;
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    standard::prepare();
    bool json = false;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--help"))
            return standard::print("bla_info", help);
        if (!std::strcmp(argv[i], "--version"))
            return standard::print("bla_info", "bla_info " BLA_VERSION "\n");
        if (std::strcmp(argv[i], "--json") != 0) {
            std::fprintf(stderr, "bla_info: what is '%s'? See --help.\n", argv[i]);
            return 2;
        }
        json = true;
    }

    bla_fill_feature_word();
    const std::uint32_t word = bla_read_feature_word();
    const bool v = (word & tier::V) == tier::V, r = (word & tier::R) == tier::R;
    const char* const three_tiers = v ? "V" : r ? "R" : "A";
    const char* const two_tiers = v ? "V" : "A";
    const std::string module = file_of("blac_dgemm_"), blas = file_of("dgemm_"), lapack = file_of("dpotrf_");
    const char* const control = thread_control();
    const std::string controller = control ? file_of(control) : "";
    const bool extension = dlsym(RTLD_DEFAULT, "daxpby_") != nullptr;
    const int threads = blaC_get_num_threads();

    if (json) {
        std::vector<std::string> features;
        for (const std::string& name : features_of(word))
            features.push_back(quoted(name));
        std::printf("{\n  \"version\": %s,\n  \"file\": %s,\n", quoted(BLA_VERSION).c_str(),
                    quoted(module).c_str());
        std::printf("  \"processor\": {\"features\": [%s],\n", joined(features, ", ").c_str());
        std::printf(
            "                \"feature_word\": \"0x%06x\", \"tier\": \"%s\", \"tier_of_two\": \"%s\"},\n",
            static_cast<unsigned>(word), three_tiers, two_tiers);
        std::printf("  \"blas\": {\"file\": %s, \"complex_results\": \"%s\", \"daxpby\": %s},\n",
                    quoted(blas).c_str(), convention_of_zdotc(), extension ? "true" : "false");
        std::printf("  \"lapack\": {\"file\": %s, \"complex_results\": \"%s\"},\n", quoted(lapack).c_str(),
                    convention_of_zladiv());
        std::printf("  \"threads\": {\"count\": %d, \"set_by\": %s, \"file\": %s}\n}\n", threads,
                    control ? quoted(control).c_str() : "null",
                    control ? quoted(controller).c_str() : "null");
        return standard::finish("bla_info");
    }

    std::printf("module     %s\n           %s\n", BLA_VERSION, module.c_str());
    std::printf("processor  tier %s; kernels of two tiers: %s\n           %s\n", three_tiers, two_tiers,
                joined(features_of(word), " ").c_str());
    std::printf("BLAS       %s\n           complex results: %s%s\n", blas.c_str(), convention_of_zdotc(),
                extension ? "" : "; without daxpby_, which the module replaces");
    std::printf("LAPACK     %s\n           complex results: %s\n", lapack.c_str(), convention_of_zladiv());
    if (control)
        std::printf("threads    %d, controlled by %s of\n           %s\n", threads, control,
                    controller.c_str());
    else
        std::printf("threads    %d; the library has no thread control that the module knows\n", threads);
    return standard::finish("bla_info");
}
