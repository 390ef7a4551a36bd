#pragma once

#include <string>
#include <vector>

/// Runs a program to its end and returns the lines that it wrote on standard output; nothing when it
/// took longer than \p i_Seconds and was ended. Throws std::runtime_error when it failed.
std::vector<std::string> runProgram(const std::vector<std::string>& i_Command, int i_Seconds);
