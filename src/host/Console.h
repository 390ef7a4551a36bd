#pragma once

#include <string>
#include <string_view>

/// The standard streams of the process. All text is UTF-8 and goes out byte by byte, so a line ends
/// with one line feed on every system.
///
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
namespace Console
{

/// Takes the streams out of the text mode that some systems start them in. To be called once, first.
void prepare();

/// Appends to the standard output; a failure is kept until `flush`.
void write(std::string_view i_Text);
/// False when something could not be written since the start.
bool flush();

/// Writes one line, ending included, to the standard error, behind all output so far.
void writeErrorLine(std::string_view i_Line);

/// \p i_Text with a space in the place of each control character, so that it stays on one line and
/// cannot steer a terminal. The number of characters stays the same.
std::string onOneLine(std::string_view i_Text);

} // namespace Console
