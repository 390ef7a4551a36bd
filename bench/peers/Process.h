#pragma once

#include <string>
#include <vector>

/// Runs a program to its end and returns the lines that it wrote to standard output. A program that takes longer than
/// \p i_Seconds is ended, and nothing is returned. Throws std::runtime_error if the program fails.
std::vector<std::string> runProgram(const std::vector<std::string>& i_Command, int i_Seconds);
