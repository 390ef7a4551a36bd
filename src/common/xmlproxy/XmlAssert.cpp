#include "xmlproxy/XmlAssert.h"

#include <cstdlib>

#if defined(_WIN32)
#include <assert.h>
#else
#include "base/String.h"

#include <cstdio>
#endif

void wideAssert(const wchar_t* i_Condition, const wchar_t* i_Source, unsigned i_Line)
{
#if defined(_WIN32)
    _wassert(i_Condition, i_Source, i_Line);
#else
    std::fprintf(stderr, "Assertion failed: %s, file %s, line %u\n", String(i_Condition).toNarrow().c_str(),
                 String(i_Source).toNarrow().c_str(), i_Line);
#endif
    // The runtime's dialog lets the user go on; whoever asserted cannot.
    std::abort();
}
