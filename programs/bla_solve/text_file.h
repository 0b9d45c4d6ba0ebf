// SPDX-License-Identifier: BSD-3-Clause
// A text file in memory and its lines. Lines end with LF, CR LF or a lone CR; the last one may lack its end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct TextFile
{
    std::string path;
    std::string content;
};

// The whole file, if it begins with `begins`; else its beginning. Throws InputError where there is none,
// where it is empty, and where its first bytes are those of a compressed file or of a byte-order mark.
TextFile loadText(const std::string& path, std::string_view begins);

// Throws InputError: one line with the file, the line (0: the file as a whole) and what is wrong.
[[noreturn]] void refuse(const TextFile& text, std::int64_t line, const std::string& what);

// A piece of the file as a message can show it: not too long, and in printable ASCII.
std::string shown(std::string_view piece);

class Lines
{
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    // Goes to the next line; false behind the last.
    bool next()
    {
        if (rest_.empty())
            return false;
        std::size_t end = 0;
        while (end < rest_.size() && rest_[end] != '\n' && rest_[end] != '\r')
            ++end;
        line_ = rest_.substr(0, end);
        torn_ = end == rest_.size();
        const bool two = rest_.substr(end).starts_with("\r\n");
        rest_.remove_prefix(torn_ ? end : end + (two ? 2 : 1));
        ++number_;
        return true;
    }

    std::string_view line() const { return line_; }
    std::int64_t number() const { return number_; } // of the line, from 1
    bool torn() const { return torn_; }             // the file ends without an end of this line
    std::size_t bytesLeft() const { return rest_.size(); }

private:
    std::string_view rest_, line_;
    std::int64_t number_ = 0;
    bool torn_ = false;
};

// The first words of a line, separated by blanks and tabs.
struct Words
{
    static constexpr int most = 6; // one more than any line may have
    std::string_view word[most];
    int count = 0;

    explicit Words(std::string_view line)
    {
        const auto blank = [&](std::size_t i) { return line[i] == ' ' || line[i] == '\t'; };
        for (std::size_t at = 0; count < most;) {
            while (at < line.size() && blank(at))
                ++at;
            const std::size_t begin = at;
            while (at < line.size() && !blank(at))
                ++at;
            if (at == begin)
                return;
            word[count++] = line.substr(begin, at - begin);
        }
    }
};
