// SPDX-License-Identifier: BSD-3-Clause
// A file that is there whole or not at all: written beside its place under another name, and renamed at the
// end. What is no regular file (a device, a pipe, standard output under any name) is written straight.
#pragma once

#include <cstdio>
#include <string>

class OutputFile
{
public:
    // Throws OutputError, as finish() does.
    explicit OutputFile(const std::string& path);
    // Without finish() nothing of a regular file stays.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    std::FILE* stream() { return stream_; }
    void finish();

private:
    [[noreturn]] void fail(int number);
    void close();

    std::string path_;
    std::string place_, temporary_; // empty: written straight
    std::FILE* stream_ = nullptr;
};

// Throws InputError where an output file would fail for certain: better now than after the work.
void checkWritable(const std::string& path);

// Whether both are names of one regular file; false where one of them is missing.
bool sameFile(const std::string& one, const std::string& other);

// Whether both are names of one place for a regular file, which need not be there yet.
bool samePlace(const std::string& one, const std::string& other);
