#pragma once

#include <string>
#include <vector>

/// Runs the tool with the arguments behind the program's name (UTF-8). Result: the exit status,
/// 0 when something was found, 1 when nothing was, 2 after an error.
/// Does not throw.
/// Tested by: tests/host/HostTest.cpp
int runApplication(const std::vector<std::string>& i_Arguments) noexcept;
