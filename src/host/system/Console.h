#pragma once

#include <functional>
#include <string>
#include <string_view>

/// The standard streams of the process. All text is UTF-8 and goes out byte by byte, so a line ends
/// with one line feed on every system.
///
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp, tests/host/TerminalTest.cpp
namespace Console
{

/// Takes the streams out of the text mode that some systems start them in. To be called once, first.
void prepare();

/// Gives the standard input to its end, block by block. Throws std::runtime_error with the reason when it cannot be
/// read.
void readInput(const std::function<void(std::string_view)>& i_Take);

/// Whether a person is at the stream.
bool isInputTerminal();
bool isOutputTerminal();
bool isErrorTerminal();
/// Makes the terminals of both streams take colours, where that has to be asked for. False when they cannot.
bool enableColours();

/// Appends to the standard output; a failure is kept until `flush`.
void write(std::string_view i_Text);
/// False when something could not be written since the start.
bool flush();

/// Writes one line, ending included, to the standard error, behind all output so far.
void writeErrorLine(std::string_view i_Line);

/// Shows a line, shorter than a terminal is wide, on the terminal of the standard error in the place of the last one;
/// an empty one takes it away. Whatever else is written stands in its place.
void showStatus(const std::string& i_Line);

/// \p i_Text with a space in the place of each control character, so that it stays on one line and
/// cannot steer a terminal. The number of characters stays the same.
std::string onOneLine(std::string_view i_Text);

} // namespace Console
