#include "Application.h"

#if defined(_WIN32)
#include "base/String.h"

#include <windows.h>

#include <shellapi.h>
#endif

namespace
{

/// The arguments after the program's name, in UTF-8.
std::vector<std::string> readArguments(int i_Count, char** i_ppArguments)
{
    std::vector<std::string> arguments;
#if defined(_WIN32)
    // The arguments of main have lost the characters that the system's code page does not have.
    static_cast<void>(i_ppArguments);
    wchar_t** const ppWide = CommandLineToArgvW(GetCommandLineW(), &i_Count);
    for (int i = 1; ppWide != nullptr && i < i_Count; ++i)
    {
        arguments.push_back(String(ppWide[i]).toNarrow());
    }
    LocalFree(ppWide);
#else
    for (int i = 1; i < i_Count; ++i)
    {
        arguments.emplace_back(i_ppArguments[i]);
    }
#endif
    return arguments;
}

} // namespace

int main(int i_Count, char** i_ppArguments)
{
    return runApplication(readArguments(i_Count, i_ppArguments));
}
