#pragma once

#include <functional>
#include <string>
#include <string_view>

/// The standard streams of the process. All text is UTF-8 and is written byte by byte, so a line ends with a single
/// line feed on every system.
///
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp, tests/host/TerminalTest.cpp
namespace Console
{

/// Switches off the text mode in which some systems start the streams. Must be called once, before all others.
void prepare();

/// Reads standard input to its end and passes it on block by block. Throws std::runtime_error with the reason if it
/// cannot be read.
void readInput(const std::function<void(std::string_view)>& i_Take);

/// Whether the stream is a terminal.
bool isInputTerminal();
bool isOutputTerminal();
bool isErrorTerminal();
/// Enables colours on the terminals of both streams, where the system requires that. Returns false if it fails.
bool enableColours();

/// Appends to standard output. A failure is reported by `flush`.
void write(std::string_view i_Text);
/// Returns false if something could not be written since the start.
bool flush();

/// Writes \p i_Line and a line feed to standard error, after all output so far.
void writeErrorLine(std::string_view i_Line);

/// Shows a line on the terminal of standard error, in place of the previous one; an empty line removes it. The line
/// must be shorter than the terminal is wide. Any other output replaces it.
void showStatus(const std::string& i_Line);

/// Replaces each control character in \p i_Text with a space, so that the text stays on one line and cannot control a
/// terminal. The number of characters does not change.
std::string onOneLine(std::string_view i_Text);

} // namespace Console
