#pragma once

#include <filesystem>
#include <string>

/// Paths as the tool has them: UTF-8 on every system.
/// Tested by: tests/host/DocumentFilesTest.cpp, tests/host/FilesTest.cpp
namespace FileSystem
{

std::filesystem::path fromUtf8(const std::string& i_Path);
std::string toUtf8(const std::filesystem::path& i_Path);

/// Folder of the running program; empty when the system does not tell.
std::filesystem::path programFolder();

/// Why \p i_Path cannot be read as a document, in a few words; empty when it looks readable.
std::string whyUnreadable(const std::string& i_Path);

/// True for a file that is no folder.
bool isFile(const std::string& i_Path);
/// True for a folder, also behind a link.
bool isFolder(const std::string& i_Path);
/// True when the last name of \p i_Path is a link or another stand-in for a folder elsewhere.
bool isLink(const std::filesystem::path& i_Path);

/// All bytes of a file. Throws std::runtime_error with the reason.
std::string readFile(const std::string& i_Path);

} // namespace FileSystem
