# SPDX-License-Identifier: BSD-3-Clause
"""Small wrong changes to bla_solve and bla_info, in the form of mutations.py."""
PROGRAM = "programs/bla_solve/"
NUMBERS, TEXT = PROGRAM + "numbers.cpp", PROGRAM + "text_file.h"
ENTRIES, HEADER = PROGRAM + "matrix_market_entries.cpp", PROGRAM + "matrix_market_header.cpp"
READER, OUTPUT, MAIN = PROGRAM + "matrix_market.cpp", PROGRAM + "output_file.cpp", PROGRAM + "main.cpp"
STANDARD = "programs/standard_output.h"

FUZZ = ("fuzz_matrix_market",)
FILES = ("tests/solve/test_files.py",)
OUTPUTS = ("tests/solve/test_programs.py",)
CONDENSE = ("tests/solve/test_condense.py",)
TASKS, SIMULATION = ("tests/solve/test_tasks.py",), ("simulation_tests",)

MUTATIONS = [
    # numbers
    ("a number has two signs", NUMBERS, " && word[1] != '-'", "", FUZZ),
    ("a plus sign is refused", NUMBERS, "word.size() > 1 &&", "word.size() > 1000 &&", FUZZ),
    ("the exponent D must be small", NUMBERS, "(*end == 'd' || *end == 'D')", "*end == 'd'", FUZZ),
    ("what follows a number is ignored", NUMBERS, "    if (end != last)\n        return Parsed::no;\n", "", FUZZ),
    ("what follows an integer is ignored", NUMBERS, "invalid_argument || end != last", "invalid_argument", FUZZ),
    ("a number too small for any double is refused", NUMBERS,
     "value = std::strtod(std::string(word).c_str(), nullptr);", "return Parsed::tooLarge;", FUZZ),
    # lines
    ("a lone carriage return ends no line", TEXT, " && rest_[end] != '\\r'", "", FUZZ),
    ("a line feed behind a carriage return is a line of its own", TEXT, "(two ? 2 : 1)", "(two && torn_ ? 2 : 1)", FILES),
    ("a tab is part of a word", TEXT, " || line[i] == '\\t'", "", FUZZ),
    ("a long word floods the message", PROGRAM + "text_file.cpp", "piece.substr(0, most)", "piece", FILES),
    # the header
    ("a complex file is taken for a real one", HEADER, 'field == "complex"', 'field == "compley"', FILES),
    ("the sizes may be followed by more", HEADER, "words.count == count", "words.count >= count", FUZZ),
    ("an announcement that the file cannot hold is believed", HEADER,
     "static_cast<std::uint64_t>(header.entries) > lines.bytesLeft()", "header.entries < 0", FILES),
    # the entries
    ("row 0 is inside", ENTRIES, "i < 1 ||", "i < 0 ||", FUZZ),
    ("the column behind the last is inside", ENTRIES, "j > header_.columns", "j > header_.columns + 1", FILES),
    ("one entry too many is taken", ENTRIES, "found == header.entries", "found == header.entries + 1", FUZZ),
    ("one entry may be missing", ENTRIES, "found < header.entries", "found + 1 < header.entries", FUZZ),
    ("a diagonal entry of a symmetric file counts twice", ENTRIES, " && row != column)\n            take", ")\n            take",
     FUZZ),
    ("both triangles of a skew-symmetric matrix have one sign", ENTRIES, "header.skew ? -value : value", "value", FUZZ),
    ("an array's triangle is stored from its first row", ENTRIES, "header_.symmetric ? column_", "header_.symmetric ? 0",
     FUZZ),
    ("NaN is a value", ENTRIES, "std::isnan(value)", "value != value && header_.rows < 0", FILES),
    ("both triangles of a symmetric file are added", ENTRIES, "header_.oneTriangle() && below_", "header_.rows < 0 && below_",
     FUZZ),
    # matrices and right-hand sides
    ("a huge empty matrix is begun", READER, "header.rows > std::max(small, entries)", "header.rows < 0", FILES),
    ("a matrix is symmetric only where the header says so", READER, "header.symmetric || isSymmetric(a)",
     "header.symmetric", FUZZ),
    ("zeros of an array are stored", READER, "!header.array || value != 0.0", "true", FUZZ),
    ("columns without entries are made without end", READER, "header.columns > header.entries", "header.columns < 0", FILES),
    # what is written
    ("an input is known by its name only", MAIN, "sameFile(output, input)", "output == input", OUTPUTS),
    ("a part of a file stays", OUTPUT, "unlink(temporary_.c_str());", "(void)temporary_;", OUTPUTS),
    ("a file in the making has its final name", OUTPUT, 'temporary_ = folderOf(place_) + ".bla_solve.XXXXXX";\n'
     "        const int number = mkstemp(temporary_.data());",
     "temporary_ = place_;\n        const int number = open(place_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);", OUTPUTS),
    ("an older file loses its permissions", OUTPUT, "exists ? status.st_mode & 07777 : ", "", OUTPUTS),
    ("a link is replaced by the file", OUTPUT, "place_ = resolved(path);", "place_ = path;", OUTPUTS),
    ("standard output is renamed away", OUTPUT, "if (standard >= 0) {", "if (standard >= 100) {", OUTPUTS),
    ("a missing solution is no failure", MAIN,
     "good &= written([&] { writeVectors", "written([&] { writeVectors", OUTPUTS),
    ("a lost report is no failure", STANDARD, "    return 1;\n", "    return 0;\n", OUTPUTS),
    ("a closed output swallows the report", STANDARD, "O_WRONLY : O_RDONLY", "O_WRONLY : O_RDWR", OUTPUTS),
    ("a file at its limit ends the program", STANDARD, "    std::signal(SIGXFSZ, SIG_IGN);\n", "", OUTPUTS),
    ("a pipe without reader ends the program", STANDARD, "    std::signal(SIGPIPE, SIG_IGN);\n", "", OUTPUTS),
    # condensation
    ("a list of unknowns may be overwritten", MAIN, "options.rhsFile(), options.condense}", "options.rhsFile()}", CONDENSE),
    ("a symmetric matrix is written from its upper triangle", PROGRAM + "matrix_market_write.cpp", "symmetric ? j : 0; i < x.n",
     "0; i < (symmetric ? j + 1 : x.n)", CONDENSE),
    ("a pivot that is none is not told", PROGRAM + "condense.cpp", "unheld.empty() && result", "result", CONDENSE),
    ("what is kept must have a pivot", PROGRAM + "condense.cpp", "std::find(kept.begin(), kept.end(), unknown) == kept.end() && ++count",
     "++count", CONDENSE),
    ("unknowns are counted from 0", PROGRAM + "unknowns.cpp", "static_cast<int>(value - 1)", "static_cast<int>(value % n)", CONDENSE),
    ("an unknown may be kept twice", PROGRAM + "unknowns.cpp", "if (there[unknown]++)", "if (there[unknown] > 1)", CONDENSE),
    # tasks
    ("the shortest path goes first", PROGRAM + "simulation.cpp", "ready.emplace(toEnd_[t], -t);",
     "ready.emplace(-toEnd_[t], -t);", SIMULATION),
    ("a task is ready when one that it waits for has ended", PROGRAM + "simulation.cpp", "--waits[next_[e]] == 0",
     "--waits[next_[e]] == waits_[next_[e]] - 1", SIMULATION),
    ("there is one worker more", PROGRAM + "simulation.cpp", "running.size()) < workers", "running.size()) <= workers", SIMULATION),
    ("of tasks that end together one is seen", PROGRAM + "simulation.cpp", "for (; !running.empty() && running.top().first == now; running.pop())",
     "for (bool one = true; one; running.pop(), one = false)", SIMULATION),
    ("the critical path goes anywhere", PROGRAM + "simulation.cpp", "toEnd_[s] < toEnd_[t];", "toEnd_[s] > toEnd_[t];", SIMULATION),
    ("the trace tells nothing of those that wait", PROGRAM + "trace.cpp", "e < tasks.start[t + 1]; ++e)", "e < tasks.start[t]; ++e)",
     TASKS),
    ("the trace cuts times off", PROGRAM + "trace.cpp", "(end - begin) / 1000, (end - begin) % 1000", "(end - begin) / 1000, 0LL",
     TASKS),
    ("workers may be none", PROGRAM + "options.cpp", "rest.substr(0, rest.find(',')), 1, 1000000)",
     "rest.substr(0, rest.find(',')), 0, 1000000)", TASKS),
    ("a trace may overwrite the matrix", MAIN, '{"--trace", options.trace},', '{"--trace", ""},', TASKS),
    ("a lost trace is no failure", MAIN, "    return there;", "    return true;", TASKS),
    ("the peak is in kilobytes", MAIN, "std::int64_t{usage.ru_maxrss} * 1024", "std::int64_t{usage.ru_maxrss}", TASKS),
    ("run.sh builds in silence", "run.sh", "(once; a few minutes) ...\" >&2", "(once; a few minutes) ...\" >/dev/null", OUTPUTS),
]
