#include "xmlproxy/XercesLibrary.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstddef>
#include <new>

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
