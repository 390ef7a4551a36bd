#include "system/SharedLibrary.h"

#include "system/FileSystem.h"

#include <stdexcept>

#if defined(_WIN32)
#include <system_error>

#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace
{

std::filesystem::path absolutePath(const std::string& i_Path)
{
    return std::filesystem::absolute(FileSystem::fromUtf8(i_Path));
}

} // namespace

#if defined(_WIN32)

SharedLibrary::SharedLibrary(const std::string& i_Path)
    : m_pHandle(LoadLibraryExW(absolutePath(i_Path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH))
{
    if (m_pHandle == nullptr)
    {
        const auto code = static_cast<int>(GetLastError());
        throw std::runtime_error("cannot load " + i_Path + ": " + std::system_category().message(code));
    }
}

SharedLibrary::~SharedLibrary()
{
    FreeLibrary(static_cast<HMODULE>(m_pHandle));
}

SharedLibrary::Function SharedLibrary::find(const char* i_Name) const noexcept
{
    return reinterpret_cast<Function>(GetProcAddress(static_cast<HMODULE>(m_pHandle), i_Name));
}

#else

SharedLibrary::SharedLibrary(const std::string& i_Path)
    : m_pHandle(dlopen(absolutePath(i_Path).c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (m_pHandle == nullptr)
    {
        const char* const pReason = dlerror();
        throw std::runtime_error(std::string("cannot load ") + (pReason == nullptr ? i_Path.c_str() : pReason));
    }
}

SharedLibrary::~SharedLibrary()
{
    dlclose(m_pHandle);
}

SharedLibrary::Function SharedLibrary::find(const char* i_Name) const noexcept
{
    return reinterpret_cast<Function>(dlsym(m_pHandle, i_Name));
}

#endif
