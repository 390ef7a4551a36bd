#include "plugin/Evaluator.h"

#include "base/String.h"
#include "plugin/ErrorFault.h"
#include "pluginsdk/Expression.h"
#include "system/FileSystem.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <memory>
#include <stdexcept>

namespace
{

constexpr int s_ScalarShape = 0;
constexpr int s_VectorShape = 1;

struct ExpressionDestroyer
{
    PluginSDK::Plugin* pPlugin;
    void operator()(PluginSDK::Expression* i_pExpression) const { pPlugin->destroyExpression(i_pExpression); }
};

using OwnedExpression = std::unique_ptr<PluginSDK::Expression, ExpressionDestroyer>;

const wchar_t* typeName(bool i_One)
{
    return i_One ? L"XmlValue" : L"XmlValues";
}

OwnedExpression makeExpression(PluginSDK::Plugin& io_Plugin, bool i_One, TErrorCode& o_Code)
{
    PluginSDK::Expression* pMade = nullptr;
    o_Code = io_Plugin.createExpression(typeName(i_One), &pMade);
    OwnedExpression pExpression(pMade, ExpressionDestroyer{&io_Plugin});
    if (o_Code == 0 && pExpression == nullptr)
    {
        throw std::bad_alloc();
    }
    if (o_Code == 0 && pExpression->getShape() != (i_One ? s_ScalarShape : s_VectorShape))
    {
        throw std::runtime_error("the plug-in made an expression of another shape than was asked for");
    }
    return pExpression;
}

TErrorCode evaluateOne(PluginSDK::Expression& io_Expression, std::vector<std::string>& o_Values)
{
    PluginSDK::String result;
    const TErrorCode code = static_cast<PluginSDK::ScalarExpression&>(io_Expression).evaluate(result);
    if (code == 0)
    {
        o_Values.push_back(String(result.c_str(), result.length()).toNarrow());
    }
    return code;
}

TErrorCode evaluateAll(PluginSDK::Expression& io_Expression, std::vector<std::string>& o_Values)
{
    PluginSDK::StringVector results;
    const TErrorCode code = static_cast<PluginSDK::VectorExpression&>(io_Expression).evaluate(results);
    for (std::size_t i = 0; code == 0 && i < results.count(); ++i)
    {
        o_Values.push_back(String(results.get(i)).toNarrow());
    }
    return code;
}

} // namespace

Evaluator::Evaluator(PluginLibrary& io_Library, TraceLog& io_Trace, Settings i_Settings)
    : m_Library(io_Library), m_Trace(io_Trace), m_Settings(i_Settings)
{
    if (!m_Library.offers(typeName(m_Settings.one)))
    {
        throw std::runtime_error(m_Library.path() + ": the plug-in does not offer " +
                                 String(typeName(m_Settings.one)).toNarrow());
    }
}

Outcome Evaluator::evaluate(const std::string& i_Path, const std::string& i_Expression)
{
    Outcome outcome;
    m_Trace.reset();
    const OwnedExpression pExpression = makeExpression(m_Library.plugin(), m_Settings.one, outcome.code);
    if (outcome.code != 0)
    {
        return outcome;
    }
    pExpression->setProperty(L"file", String(i_Path.c_str()).c_str());
    pExpression->setProperty(L"xpath", String(i_Expression.c_str()).c_str());
    // A single string cannot distinguish no value from an empty one, so the plug-in must always report a missing value.
    pExpression->setProperty(L"mustExist", m_Settings.mustExist || m_Settings.one ? L"true" : L"false");
    outcome.code =
        m_Settings.one ? evaluateOne(*pExpression, outcome.values) : evaluateAll(*pExpression, outcome.values);
    if (outcome.code == XML_PLUGIN_ERROR_NO_VALUE && !m_Settings.mustExist)
    {
        outcome.code = 0;
    }
    if (outcome.code == XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED)
    {
        outcome.recognisedUpTo = m_Trace.recognisedUpTo();
    }
    if (isDocumentError(outcome.code))
    {
        outcome.reason = FileSystem::whyUnreadable(i_Path);
        outcome.reason = outcome.reason.empty() ? m_Trace.documentFault() : outcome.reason;
    }
    return outcome;
}

Outcome Evaluator::probe(const std::string& i_Path, const std::string& i_Expression)
{
    const MutedTrace muted(m_Trace);
    return evaluate(i_Path, i_Expression);
}

void Evaluator::forgetDocuments()
{
    m_Library.plugin().unload();
}
