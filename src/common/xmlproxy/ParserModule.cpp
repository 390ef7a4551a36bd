// The parser library of a plug-in that has it in a module beside itself, loaded by the first document that needs it.

#include "xmlproxy/ParserModule.h"

#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/SAXParser.h"
#include "xmlproxy/XmlName.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <string>

#include <dlfcn.h>

namespace
{

struct ModuleCloser
{
    void operator()(void* i_pModule) const noexcept { dlclose(i_pModule); }
};

using OwnModule = std::unique_ptr<void, ModuleCloser>;

/// The module's own library, with the module.
class ModuleParserLibrary final : public ParserLibrary
{
public:
    ModuleParserLibrary(OwnModule i_pModule, std::unique_ptr<ParserLibrary> i_pLibrary) noexcept
        : m_pModule(std::move(i_pModule)), m_pLibrary(std::move(i_pLibrary))
    {
    }

    std::unique_ptr<SAXParser> makeParser(SAXHandler* i_pHandler) override
    {
        return m_pLibrary->makeParser(i_pHandler);
    }

private:
    OwnModule m_pModule; // outlives the library, whose code it holds
    std::unique_ptr<ParserLibrary> m_pLibrary;
};

/// Absolute path of the module; empty until it is asked for.
std::string& modulePath()
{
    static std::string s_Path;
    return s_Path;
}

[[noreturn]] void fail(const char* i_pReason)
{
    throw ParserLibraryError(std::string("cannot load the parser module ") + ParserModule::s_FileName + ": " +
                             (i_pReason ? i_pReason : "no reason"));
}

OwnModule load(const std::string& i_Path)
{
    errno = 0;
    // Lazy: few of the functions of some thirty libraries are ever called.
    OwnModule pModule(dlopen(i_Path.c_str(), RTLD_LAZY | RTLD_LOCAL));
    if (!pModule)
    {
        const bool isMemory = errno == ENOMEM;
        const char* const pReason = dlerror();
        if (isMemory)
        {
            throw std::bad_alloc();
        }
        fail(pReason);
    }
    return pModule;
}

} // namespace

void ParserLibrary::locate()
{
    if (!modulePath().empty())
    {
        return;
    }
    Dl_info info{};
    const bool isKnown = dladdr(reinterpret_cast<void*>(&ParserLibrary::locate), &info) != 0 && info.dli_fname;
    const std::string plugin = isKnown ? info.dli_fname : "";
    const std::string path = plugin.substr(0, plugin.rfind('/') + 1) + ParserModule::s_FileName;
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    modulePath() = error ? path : absolute.string();
}

std::unique_ptr<ParserLibrary> ParserLibrary::start()
{
    locate();
    OwnModule pModule = load(modulePath());
    const auto pEntry = reinterpret_cast<ParserModule::Entry>(dlsym(pModule.get(), ParserModule::s_EntryName));
    if (!pEntry)
    {
        fail(dlerror());
    }
    std::unique_ptr<ParserLibrary> pLibrary(pEntry(XmlName::secret()));
    if (!pLibrary)
    {
        throw std::bad_alloc();
    }
    return std::make_unique<ModuleParserLibrary>(std::move(pModule), std::move(pLibrary));
}
