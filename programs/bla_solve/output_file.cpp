// SPDX-License-Identifier: BSD-3-Clause
#include "output_file.h"

#include "error.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool same(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// The standard stream that writes to this file, -1: none. Renaming a file over it, or opening it once more,
// would lose what else goes there.
int standardStream(const struct stat& file)
{
    struct stat stream;
    for (int number : {STDOUT_FILENO, STDERR_FILENO})
        if (fstat(number, &stream) == 0 && same(file, stream) &&
            (fcntl(number, F_GETFL) & O_ACCMODE) != O_RDONLY)
            return number;
    return -1;
}

// Where the links lead, if the file exists.
std::string resolved(const std::string& path)
{
    char buffer[PATH_MAX];
    return realpath(path.c_str(), buffer) ? buffer : path;
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

} // namespace

OutputFile::OutputFile(const std::string& path) : path_(path)
{
    struct stat status;
    const bool exists = stat(path.c_str(), &status) == 0;
    const int standard = exists ? standardStream(status) : -1;
    if (standard >= 0) {
        stream_ = fdopen(dup(standard), "w");
    } else if (exists && !S_ISREG(status.st_mode)) {
        stream_ = std::fopen(path.c_str(), "w");
    } else {
        place_ = resolved(path);
        temporary_ = folderOf(place_) + ".bla_solve.XXXXXX";
        const int number = mkstemp(temporary_.data());
        if (number < 0) {
            temporary_.clear();
            fail(errno);
        }
        const mode_t mask = umask(0);
        umask(mask);
        fchmod(number, exists ? status.st_mode & 07777 : 0666 & ~mask);
        stream_ = fdopen(number, "w");
    }
    if (!stream_)
        fail(errno);
}

OutputFile::~OutputFile()
{
    close();
}

void OutputFile::close()
{
    if (stream_)
        std::fclose(stream_);
    stream_ = nullptr;
    if (!temporary_.empty())
        unlink(temporary_.c_str());
    temporary_.clear();
}

void OutputFile::fail(int number)
{
    close();
    throw OutputError(path_ + ": not written: " + std::strerror(number));
}

void OutputFile::finish()
{
    errno = 0;
    if (std::fflush(stream_) != 0 || std::ferror(stream_))
        fail(errno != 0 ? errno : EIO);
    std::FILE* const stream = stream_;
    stream_ = nullptr;
    if (std::fclose(stream) != 0)
        fail(errno);
    if (!temporary_.empty() && std::rename(temporary_.c_str(), place_.c_str()) != 0)
        fail(errno);
    temporary_.clear();
}

void checkWritable(const std::string& path)
{
    const auto demand = [&](bool holds) {
        if (!holds)
            throw InputError(path + ": cannot be written: " + std::strerror(errno));
    };
    struct stat status;
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            errno = EISDIR;
            demand(false);
        }
        if (standardStream(status) >= 0)
            return;
        demand(access(path.c_str(), W_OK) == 0);
        if (!S_ISREG(status.st_mode))
            return;
    } else {
        demand(errno == ENOENT);
    }
    demand(access(folderOf(resolved(path)).c_str(), W_OK | X_OK) == 0);
}

bool sameFile(const std::string& one, const std::string& other)
{
    struct stat a, b;
    return stat(one.c_str(), &a) == 0 && stat(other.c_str(), &b) == 0 && same(a, b) && S_ISREG(a.st_mode);
}

bool samePlace(const std::string& one, const std::string& other)
{
    struct stat a, b;
    const bool aThere = stat(one.c_str(), &a) == 0, bThere = stat(other.c_str(), &b) == 0;
    if (aThere || bThere)
        return sameFile(one, other);
    const auto name = [](const std::string& path) { return path.substr(path.rfind('/') + 1); };
    return name(one) == name(other) && stat(folderOf(one).c_str(), &a) == 0 &&
           stat(folderOf(other).c_str(), &b) == 0 && same(a, b);
}
