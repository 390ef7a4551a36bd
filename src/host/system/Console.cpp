#include "system/Console.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#if defined(_WIN32)
#include <cstdlib>

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace Console
{

namespace
{

bool s_Failed = false;
bool s_HasStatus = false;

void writeToError(std::string_view i_Text)
{
    std::fwrite(i_Text.data(), 1, i_Text.size(), stderr);
    std::fflush(stderr);
}

void hideStatus()
{
    if (s_HasStatus)
    {
        writeToError("\r\x1B[K");
        s_HasStatus = false;
    }
}

#if defined(_WIN32)

UINT s_CodePageBefore = 0;

/// Makes a console read output as UTF-8 until the program ends. Does nothing without a console.
void showUtf8()
{
    s_CodePageBefore = GetConsoleOutputCP();
    if (s_CodePageBefore != 0 && s_CodePageBefore != CP_UTF8 && SetConsoleOutputCP(CP_UTF8) != 0)
    {
        std::atexit([] { SetConsoleOutputCP(s_CodePageBefore); });
    }
}

bool isConsole(DWORD i_Stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(i_Stream), &mode) != 0;
}

/// A stream that is not a console takes any bytes.
bool enableSequences(DWORD i_Stream)
{
    constexpr DWORD sequences = 0x0004; // ENABLE_VIRTUAL_TERMINAL_PROCESSING
    const HANDLE stream = GetStdHandle(i_Stream);
    DWORD mode = 0;
    return GetConsoleMode(stream, &mode) == 0 || SetConsoleMode(stream, mode | sequences) != 0;
}

#endif

} // namespace

void prepare()
{
#if defined(_WIN32)
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    showUtf8();
#endif
}

void readInput(const std::function<void(std::string_view)>& i_Take)
{
    std::array<char, 65536> block;
    for (;;)
    {
        const std::size_t count = std::fread(block.data(), 1, block.size(), stdin);
        if (count > 0)
        {
            i_Take(std::string_view(block.data(), count));
            continue;
        }
        if (std::ferror(stdin) != 0)
        {
            throw std::runtime_error("cannot read the standard input: " + std::generic_category().message(errno));
        }
        return;
    }
}

#if defined(_WIN32)

bool isInputTerminal()
{
    return isConsole(STD_INPUT_HANDLE);
}

bool isOutputTerminal()
{
    return isConsole(STD_OUTPUT_HANDLE);
}

bool isErrorTerminal()
{
    return isConsole(STD_ERROR_HANDLE);
}

bool enableColours()
{
    const bool isOutput = enableSequences(STD_OUTPUT_HANDLE);
    return enableSequences(STD_ERROR_HANDLE) && isOutput;
}

#else

bool isInputTerminal()
{
    return isatty(STDIN_FILENO) != 0;
}

bool isOutputTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

bool isErrorTerminal()
{
    return isatty(STDERR_FILENO) != 0;
}

bool enableColours()
{
    return true;
}

#endif

void write(std::string_view i_Text)
{
    hideStatus();
    if (std::fwrite(i_Text.data(), 1, i_Text.size(), stdout) != i_Text.size())
    {
        s_Failed = true;
    }
}

bool flush()
{
    if (std::fflush(stdout) != 0)
    {
        s_Failed = true;
    }
    return !s_Failed;
}

void writeErrorLine(std::string_view i_Line)
{
    hideStatus();
    flush();
    std::string line(i_Line);
    line += '\n';
    writeToError(line);
}

void showStatus(const std::string& i_Line)
{
    hideStatus();
    if (!i_Line.empty())
    {
        flush(); // values of a terminal stand above the line
        writeToError(i_Line);
        s_HasStatus = true;
    }
}

std::string onOneLine(std::string_view i_Text)
{
    const auto byteAt = [i_Text](std::size_t i_Place)
    { return i_Place < i_Text.size() ? static_cast<unsigned char>(i_Text[i_Place]) : 0U; };
    std::string result;
    result.reserve(i_Text.size());
    for (std::size_t i = 0; i < i_Text.size(); ++i)
    {
        // U+0080 to U+009F are two bytes each.
        const bool isWide = byteAt(i) == 0xC2 && byteAt(i + 1) >= 0x80 && byteAt(i + 1) <= 0x9F;
        const bool isControl = isWide || byteAt(i) < 0x20 || byteAt(i) == 0x7F;
        result += isControl ? ' ' : i_Text[i];
        i += isWide ? 1 : 0;
    }
    return result;
}

} // namespace Console
