// SPDX-License-Identifier: BSD-3-Clause
// What a program prints arrives, or the program says that it did not.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace standard {

/// To be called first. A standard stream that the caller closed is occupied, so that no other file gets its
/// number, and opened the wrong way round, so that its use still fails. A pipe without reader or a file at
/// its limit fails like a full disk, instead of ending the process.
inline void prepare()
{
    for (int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(number, F_GETFD) < 0 && open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            _exit(1);
    std::setvbuf(stdout, nullptr, _IOFBF, 1 << 16); // what is printed fails as a whole, in finish()
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

/// Behind the last that is printed: 0, or 1 with a message on standard error where not all of it arrived.
inline int finish(const char* program)
{
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return 0;
    std::fprintf(stderr, "%s: the output cannot be written: %s\n", program, std::strerror(errno));
    return 1;
}

inline int print(const char* program, const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    return finish(program);
}

} // namespace standard
