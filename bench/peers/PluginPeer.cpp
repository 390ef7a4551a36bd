// The plug-in, used as a host does: loaded at run time, an expression made for each query.

#include "Peer.h"

#include "base/String.h"
#include "plugin/PluginLibrary.h"
#include "pluginsdk/Expression.h"

#include <memory>
#include <stdexcept>
#include <xercesc/util/PlatformUtils.hpp>

namespace
{

class PluginPeer final : public Peer
{
public:
    explicit PluginPeer(const char* i_Path) : m_Library(i_Path) {}

    void load(const std::string& i_Path) override { m_File = String(i_Path.c_str()); }
    void unload() override { m_Library.plugin().unload(); }
    void forget() override {}
    void holdLibrary() override { xercesc::XMLPlatformUtils::Initialize(); }
    void prepare(const std::string& i_Expression) override { m_Expression = String(i_Expression.c_str()); }

    std::size_t query() override
    {
        PluginSDK::Plugin& plugin = m_Library.plugin();
        PluginSDK::Expression* pExpression = nullptr;
        if (plugin.createExpression(L"XmlValues", &pExpression) != 0 || pExpression == nullptr)
        {
            throw std::runtime_error("the plug-in makes no expression");
        }
        pExpression->setProperty(L"file", m_File.c_str());
        pExpression->setProperty(L"xpath", m_Expression.c_str());
        pExpression->setProperty(L"mustExist", L"true");
        m_Values = PluginSDK::StringVector();
        const TErrorCode code = static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(m_Values);
        plugin.destroyExpression(pExpression);
        if (code != 0)
        {
            throw std::runtime_error("the plug-in answers " + m_Expression.toNarrow() + " with " +
                                     std::to_string(code));
        }
        return m_Values.count();
    }

    std::vector<std::string> values() const override
    {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < m_Values.count(); ++i)
        {
            texts.push_back(String(m_Values.get(i)).toNarrow());
        }
        return texts;
    }

private:
    PluginLibrary m_Library;
    String m_File;
    String m_Expression;
    PluginSDK::StringVector m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char* i_Argument)
{
    return new PluginPeer(i_Argument);
}
