#pragma once

#include <filesystem>
#include <string>

/// Files and paths. The tool's paths are UTF-8 on every system.
/// Tested by: tests/host/DocumentFilesTest.cpp, tests/host/FilesTest.cpp
namespace FileSystem
{

std::filesystem::path fromUtf8(const std::string& i_Path);
std::string toUtf8(const std::filesystem::path& i_Path);

/// The folder of the running program; empty if the system does not report it.
std::filesystem::path programFolder();

/// Says in a few words why \p i_Path cannot be read as a document; empty if it looks readable.
std::string whyUnreadable(const std::string& i_Path);

/// True if the path exists and is not a folder.
bool isFile(const std::string& i_Path);
/// True for a folder, or a link to one.
bool isFolder(const std::string& i_Path);
/// True if the last name of \p i_Path is a link or something else that points to another folder.
bool isLink(const std::filesystem::path& i_Path);

/// Returns all bytes of a file. Throws std::runtime_error with the reason if it cannot be read.
std::string readFile(const std::string& i_Path);

} // namespace FileSystem
