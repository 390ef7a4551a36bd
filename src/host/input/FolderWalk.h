#pragma once

#include <string>
#include <vector>

/// Finds the documents below a folder: the files whose names end in ".xml" or ".zip", in capitals too.
///
/// A folder's entries come in the order of their names, byte by byte, and what a folder holds stands in the folder's
/// place. A link to a file counts as one, a link to a folder is not followed. What is neither a file nor a folder is
/// passed over. Folders as deep as the system allows need no more stack than flat ones.
/// Threads: one at a time.
/// Tested by: tests/host/input/FileListTest.cpp
class FolderWalk
{
public:
    /// Both lists are appended to and outlive the object; paths are UTF-8.
    FolderWalk(std::vector<std::string>& io_Files, std::vector<std::string>& io_Problems)
        : m_Files(io_Files), m_Problems(io_Problems)
    {
    }

    /// Adds what is in \p i_Folder, with its path in front. Folders that cannot be read are added to the problems,
    /// one line each.
    void add(const std::string& i_Folder);

private:
    std::vector<std::string>& m_Files;
    std::vector<std::string>& m_Problems;
};
