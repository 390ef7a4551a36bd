#include "Console.h"

#include <cstdio>

#if defined(_WIN32)
#include <cstdlib>

#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

namespace Console
{

namespace
{

bool s_Failed = false;

#if defined(_WIN32)

UINT s_CodePageBefore = 0;

/// Makes a console take what is written for UTF-8, until the program ends. Without a console nothing happens.
void showUtf8()
{
    s_CodePageBefore = GetConsoleOutputCP();
    if (s_CodePageBefore != 0 && s_CodePageBefore != CP_UTF8 && SetConsoleOutputCP(CP_UTF8) != 0)
    {
        std::atexit([] { SetConsoleOutputCP(s_CodePageBefore); });
    }
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

void write(std::string_view i_Text)
{
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
    flush();
    std::string line(i_Line);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

std::string onOneLine(std::string_view i_Text)
{
    std::string result(i_Text);
    for (char& byte : result)
    {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F)
        {
            byte = ' ';
        }
    }
    return result;
}

} // namespace Console
