#pragma once

#include <string>
#include <vector>

/// Finds the documents in and below a folder: the files whose names end in ".xml" or ".zip", in upper or lower case.
///
/// The entries of a folder are sorted by name, byte by byte, and the contents of a subfolder take the place of the
/// subfolder. A link to a file counts as a file; a link to a folder is not followed. Anything else is ignored. The
/// depth of the folders does not affect the stack.
/// Threads: one at a time.
/// Tested by: tests/host/input/FileListTest.cpp
class FolderWalk
{
public:
    /// Appends to both lists, which must outlive the object. Paths are UTF-8.
    FolderWalk(std::vector<std::string>& io_Files, std::vector<std::string>& io_Problems)
        : m_Files(io_Files), m_Problems(io_Problems)
    {
    }

    /// Adds the documents in \p i_Folder, with its path as a prefix. Adds a line to the problems for each folder that
    /// cannot be read.
    void add(const std::string& i_Folder);

private:
    std::vector<std::string>& m_Files;
    std::vector<std::string>& m_Problems;
};
