/* SPDX-License-Identifier: BSD-3-Clause */
/* Loaded before the solver's library: of the processes that share a folder only one at a time is in the
 * solver, and each writes what that took it, seconds of its own processor time: analyse factorise solve, and
 * how many solutions. No call waits for another process, so that nothing can lock up. */
#include <TOVBlaSolver.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

static double spent[3];
static long solutions;
static int lock = -1;

static const char* folder(void)
{
    const char* name = getenv("BLA_ONE_AT_A_TIME");
    return name ? name : ".";
}

static double now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return (double)time.tv_sec + 1e-9 * (double)time.tv_nsec;
}

static double enter(void)
{
    if (lock < 0) {
        char name[4096];
        snprintf(name, sizeof name, "%s/lock", folder());
        lock = open(name, O_RDWR | O_CREAT, 0600);
    }
    flock(lock, LOCK_EX);
    return now();
}

static void leave(int phase, double since)
{
    spent[phase] += now() - since;
    flock(lock, LOCK_UN);
}

int bla_solver_analyse(bla_solver* solver, int kind, int32_t n, const int64_t* start, const int32_t* column)
{
    int (*const real)(bla_solver*, int, int32_t, const int64_t*, const int32_t*) =
        (int (*)(bla_solver*, int, int32_t, const int64_t*, const int32_t*))dlsym(RTLD_NEXT,
                                                                                  "bla_solver_analyse");
    const double since = enter();
    const int status = real(solver, kind, n, start, column);
    leave(0, since);
    return status;
}

int bla_solver_factorise(bla_solver* solver, const double* value)
{
    int (*const real)(bla_solver*, const double*) =
        (int (*)(bla_solver*, const double*))dlsym(RTLD_NEXT, "bla_solver_factorise");
    const double since = enter();
    const int status = real(solver, value);
    leave(1, since);
    return status;
}

int bla_solver_solve(bla_solver* solver, int transposed, int32_t nrhs, double* b, int64_t ldb)
{
    int (*const real)(bla_solver*, int, int32_t, double*, int64_t) =
        (int (*)(bla_solver*, int, int32_t, double*, int64_t))dlsym(RTLD_NEXT, "bla_solver_solve");
    const double since = enter();
    const int status = real(solver, transposed, nrhs, b, ldb);
    leave(2, since);
    solutions += nrhs;
    return status;
}

__attribute__((destructor)) static void report(void)
{
    char name[4096];
    FILE* file;
    if (lock < 0)
        return;
    snprintf(name, sizeof name, "%s/%ld.times", folder(), (long)getpid());
    file = fopen(name, "w");
    if (!file)
        return;
    fprintf(file, "%.6f %.6f %.6f %ld\n", spent[0], spent[1], spent[2], solutions);
    fclose(file);
}
