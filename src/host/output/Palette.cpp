#include "output/Palette.h"

#include "system/Console.h"

#include <cstdlib>
#include <string_view>

namespace
{

std::string_view environmentValue(const char* i_pName)
{
    const char* const pValue = std::getenv(i_pName);
    return pValue == nullptr ? std::string_view() : std::string_view(pValue);
}

} // namespace

Palette Palette::choose(ColorChoice i_Choice, bool i_IsTerminal)
{
    switch (i_Choice)
    {
    case ColorChoice::Always:
        return Palette(true);
    case ColorChoice::Never:
        return Palette(false);
    case ColorChoice::Auto:
        break;
    }
    return Palette(i_IsTerminal && environmentValue("NO_COLOR").empty() && !isTerminalDumb() &&
                   Console::enableColours());
}

bool isTerminalDumb()
{
    return environmentValue("TERM") == "dumb";
}
