#pragma once

#include <string>
#include <vector>

/// Runs the tool with the arguments after the program's name (UTF-8). Returns the exit status: 0 if something was
/// found, 1 if nothing was found, 2 after an error. Never throws.
/// Tested by: tests/host/HostTest.cpp
int runApplication(const std::vector<std::string>& i_Arguments) noexcept;
