#include "xmlproxy/ParserLibrary.h"

#include <utility>

// A pointer without an owner: at the end of a process whose host never calls `release`, the parser library's own
// static objects may be gone already.
ParserLibrary* ParserLibrary::s_pInstance = nullptr;

ParserLibrary& ParserLibrary::instance()
{
    if (!s_pInstance)
    {
        s_pInstance = start().release();
    }
    return *s_pInstance;
}

void ParserLibrary::release() noexcept
{
    delete std::exchange(s_pInstance, nullptr);
}
