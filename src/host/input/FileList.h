#pragma once

#include <string>
#include <string_view>
#include <vector>

struct Options;

/// The files that a command line asks for, in order.
/// Tested by: tests/host/input/FileListTest.cpp
struct FileList
{
    std::vector<std::string> files;    ///< UTF-8 if the system's names are; "-" is standard input
    std::vector<std::string> problems; ///< folders that could not be read, one line each
};

/// Returns the files named as operands, then those in the list that `--files-from` names. With `-r`, each folder among
/// them is replaced by the documents in it. Throws std::runtime_error if the list cannot be read.
FileList collectFiles(const Options& i_Options);

/// Splits a list into names. Each name ends at \p i_End or at the end of the text; empty names are ignored.
std::vector<std::string> splitNames(std::string_view i_List, char i_End);
