#include "xmlproxy/XercesLibrary.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstddef>
#include <new>

#if defined(__linux__)
#include <dlfcn.h>
#endif

namespace
{

/// More than the library's initialisation takes.
constexpr std::size_t s_InitialisationMemory = std::size_t{1} << 20;

std::size_t s_StartCount = 0;

bool isRunning()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

/// When memory runs out while the library is initialised, it ends the process or stays half
/// initialised for good. So what it needs is tried for before.
void probeMemory()
{
    ::operator delete(::operator new(s_InitialisationMemory));
}

/// The library's decoders keep what they know of an encoding in memory that they never give back. So
/// where a host loads and unloads the plug-in again and again, the library stays, and knows it.
void stayLoaded()
{
#if defined(__linux__)
    static bool s_Stays = false;
    Dl_info library{};
    if (!s_Stays && dladdr(reinterpret_cast<void*>(&xercesc::XMLPlatformUtils::Terminate), &library) != 0 &&
        library.dli_fname)
    {
        s_Stays = dlopen(library.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE) != nullptr;
    }
#endif
}

} // namespace

XercesLibrary::~XercesLibrary()
{
    if (!m_IsHeld)
    {
        return;
    }
    try
    {
        xercesc::XMLPlatformUtils::Terminate();
    }
    catch (...) // NOLINT(bugprone-empty-catch): a want of memory in that is not worth the process
    {
    }
}

void XercesLibrary::acquire()
{
    if (m_IsHeld)
    {
        return;
    }
    const bool isFirst = !isRunning();
    if (isFirst)
    {
        probeMemory();
    }
    try
    {
        xercesc::XMLPlatformUtils::Initialize();
    }
    catch (const xercesc::OutOfMemoryException&)
    {
        throw std::bad_alloc();
    }
    m_IsHeld = true;
    s_StartCount += isFirst ? 1 : 0;
    stayLoaded();
}

void XercesLibrary::hold()
{
    try
    {
        acquire();
    }
    catch (const xercesc::XMLException&) // NOLINT(bugprone-empty-catch)
    {
    }
}

std::size_t XercesLibrary::startCount() noexcept
{
    return s_StartCount;
}
