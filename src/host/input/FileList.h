#pragma once

#include <string>
#include <string_view>
#include <vector>

struct Options;

/// The files that a command line asks for, in order.
/// Tested by: tests/host/input/FileListTest.cpp
struct FileList
{
    std::vector<std::string> files;    ///< UTF-8 where the system's names are; "-" is the standard input
    std::vector<std::string> problems; ///< folders that could not be read, one line each
};

/// The files named as operands, then those of the list that `--files-from` names; with `-r` each folder among them
/// gives way to the documents in it. Throws std::runtime_error when the list cannot be read.
FileList collectFiles(const Options& i_Options);

/// The names in a list: each ends at \p i_End or with the text, and empty ones do not count.
std::vector<std::string> splitNames(std::string_view i_List, char i_End);
