#include "xmlproxy/XercesEnvironment.h"

#include <cstdlib>
#include <string_view>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace
{

constexpr std::string_view s_Refused = "XERCES_DISABLE_DTD=1";
/// Belongs to the environment while it is in use, so it is not a constant.
char s_Allowed[] = "XERCES_DISABLE_DTD=0";

} // namespace

#if defined(_WIN32)

XercesEnvironment::XercesEnvironment() noexcept
{
    const char* pValue = std::getenv("XERCES_DISABLE_DTD");
    if (pValue && std::string_view(pValue) == "1" && _putenv(s_Allowed) == 0)
    {
        m_pEntry = s_Allowed;
    }
}

XercesEnvironment::~XercesEnvironment()
{
    if (m_pEntry)
    {
        _putenv(s_Refused.data());
    }
}

#else

// Replacing an entry by its like changes one pointer and allocates nothing.
XercesEnvironment::XercesEnvironment() noexcept
{
    for (char** pEntry = environ; pEntry && *pEntry; ++pEntry)
    {
        if (*pEntry == s_Refused)
        {
            m_pEntry = *pEntry;
            putenv(s_Allowed);
            return;
        }
    }
}

XercesEnvironment::~XercesEnvironment()
{
    if (m_pEntry)
    {
        putenv(m_pEntry);
    }
}

#endif
