// SPDX-License-Identifier: BSD-3-Clause
#include "text_file.h"

#include "error.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace {

// What a file is that cannot be text, by its first bytes; longer beginnings before those they contain.
const struct
{
    std::string_view begins;
    const char* what;
} notText[] = {
    {"\x1f\x8b", "compressed with gzip; unpack it first"},
    {"\x1f\x9d", "compressed with compress; unpack it first"},
    {"BZh", "compressed with bzip2; unpack it first"},
    {"\xfd\x37zXZ", "compressed with xz; unpack it first"},
    {"\x28\xb5\x2f\xfd", "compressed with zstd; unpack it first"},
    {"\x04\x22\x4d\x18", "compressed with lz4; unpack it first"},
    {"PK\x03\x04", "a zip archive; unpack it first"},
    {"\xef\xbb\xbf", "begins with a byte-order mark (UTF-8); save it as plain text without one"},
    {std::string_view("\xff\xfe\0\0", 4), "text in UTF-32; save it as plain text (ASCII)"},
    {std::string_view("\0\0\xfe\xff", 4), "text in UTF-32; save it as plain text (ASCII)"},
    {"\xff\xfe", "text in UTF-16; save it as plain text (ASCII)"},
    {"\xfe\xff", "text in UTF-16; save it as plain text (ASCII)"},
};

} // namespace

void refuse(const TextFile& text, std::int64_t line, const std::string& what)
{
    throw InputError(text.path + ": " + (line > 0 ? "line " + std::to_string(line) + ": " : "") + what);
}

std::string shown(std::string_view piece)
{
    constexpr std::size_t most = 40;
    std::string result(piece.substr(0, most));
    for (char& c : result)
        if (c < ' ' || c > '~')
            c = '?';
    return piece.size() > most ? result + "..." : result;
}

TextFile loadText(const std::string& path, std::string_view begins)
{
    TextFile text{path, {}};
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file)
        refuse(text, 0, std::strerror(errno));
    struct stat status;
    const bool sized = fstat(fileno(file.get()), &status) == 0 && S_ISREG(status.st_mode); // else as it comes
    char block[1 << 16];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, file.get())) > 0;) {
        text.content.append(block, got);
        if (!text.content.starts_with(begins))
            break; // whatever it is, it may be without end
        if (sized)
            text.content.reserve(static_cast<std::size_t>(status.st_size));
    }
    if (std::ferror(file.get()))
        refuse(text, 0, std::strerror(errno));
    if (text.content.empty())
        refuse(text, 0, "the file is empty");
    for (const auto& kind : notText)
        if (text.content.starts_with(kind.begins))
            refuse(text, 0, kind.what);
    return text;
}
