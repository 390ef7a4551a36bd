#include "base/zip/ZipModule.h"

#if !defined(_WIN32)
#include <cerrno>
#include <new>
#include <stdexcept>
#include <string>

#include <dlfcn.h>
#endif

namespace
{

#if defined(_WIN32)

decltype(&openZipArchive) opener()
{
    return &openZipArchive;
}

#else

using Opener = decltype(&openZipArchive);

/// Beside the library that this is a part of.
std::string modulePath()
{
    Dl_info info{};
    const bool isKnown = dladdr(reinterpret_cast<void*>(&ZipModule::open), &info) != 0 && info.dli_fname != nullptr;
    const std::string library = isKnown ? info.dli_fname : "";
    const std::string folder = library.substr(0, library.rfind('/') + 1);
    return (folder.empty() ? "./" : folder) + XMLPLUGIN_ZIP_MODULE;
}

[[noreturn]] void fail(const char* i_pReason)
{
    throw std::runtime_error(std::string("cannot load the archive module " XMLPLUGIN_ZIP_MODULE ": ") +
                             (i_pReason == nullptr ? "no reason" : i_pReason));
}

Opener load()
{
    const std::string path = modulePath();
    errno = 0;
    void* const pModule = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (pModule == nullptr)
    {
        const bool isMemory = errno == ENOMEM;
        const char* const pReason = dlerror();
        if (isMemory)
        {
            throw std::bad_alloc();
        }
        fail(pReason);
    }
    const auto pOpener = reinterpret_cast<Opener>(dlsym(pModule, "openZipArchive"));
    if (pOpener == nullptr)
    {
        fail(dlerror());
    }
    return pOpener;
}

/// Tries again after a failure.
Opener opener()
{
    static const Opener s_pOpener = load();
    return s_pOpener;
}

#endif

} // namespace

std::unique_ptr<ZipArchive> ZipModule::open(const String& i_Path)
{
    return std::unique_ptr<ZipArchive>(opener()(i_Path));
}
