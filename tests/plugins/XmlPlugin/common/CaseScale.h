#pragma once

#include <cstdlib>

/// Support of the tests: how many times the usual number of random cases are tried. The environment variable
/// XMLPLUGIN_CASES says so; 1 without it.
inline int scale()
{
    const char* const pScale = std::getenv("XMLPLUGIN_CASES");
    const int factor = pScale ? std::atoi(pScale) : 1;
    return factor > 0 ? factor : 1;
}
