#include "compile/XPathTokenEmitter.h"

#include "compile/XPathPlainReader.h"
#include "values/XPathArgument.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"

#include <string>

namespace XmlPlugin
{

void XPathTokenEmitter::token(std::wstring_view i_Text, std::wstring_view i_Next)
{
    add(XPathExpression::create(i_Text, i_Next, m_Elements));
}

void XPathTokenEmitter::argument(std::wstring_view i_Text)
{
    add(m_Elements.addArgument(i_Text));
}

void XPathTokenEmitter::path(std::wstring_view i_Text)
{
    add(makePath(i_Text));
}

void XPathTokenEmitter::negativeZero()
{
    XPathArgument& zero = m_Elements.addArgument(L"0");
    zero.setNegativeZero(true);
    add(zero);
}

void XPathTokenEmitter::add(XPathExpression& i_Token)
{
    if (m_ExprVector.size() >= m_Limit)
    {
        m_IsLimitExceeded = true;
        return;
    }
    m_ExprVector.push_back(&i_Token);
}

XPathArgument& XPathTokenEmitter::makePath(std::wstring_view i_Text)
{
    const XPathPlan* pPlan = XPathQuickCode::isAllowed() ? XPathPlainReader::readWhole(i_Text, m_Elements) : nullptr;
    return pPlan ? m_Elements.addPath(i_Text, *pPlan) : m_Elements.addArgument(i_Text);
}

/// The first and the last token are the parentheses put around the caller's expression.
void XPathTokenEmitter::mergeUnions()
{
    const std::size_t size = m_ExprVector.size();
    if (size < 5)
    {
        return;
    }
    XPathExpressionsVector merged;
    merged.reserve(size);
    // A chain a|b|c grows in one buffer. As each link reads the text so far without enclosing
    // quotes, the text begins at an index that moves instead of the text.
    std::wstring chain;
    std::size_t chainBegin = 0;
    bool isChain = false;
    const auto endChain = [&]
    {
        if (!isChain)
        {
            return;
        }
        merged.back() = &makePath(m_Elements.keep(std::wstring_view(chain).substr(chainBegin)));
        isChain = false;
    };

    for (std::size_t i = 0; i < size; ++i)
    {
        XPathExpression* const pToken = m_ExprVector[i];
        if (i == 0 || i + 1 >= size || !isToken(pToken->stringView(), L'|'))
        {
            endChain();
            merged.push_back(pToken);
            continue;
        }
        if (!isChain)
        {
            chain = merged.back()->stringView();
            chainBegin = 0;
            isChain = true;
        }
        else if (chain.size() - chainBegin >= 2 && chain[chainBegin] == chain.back() &&
                 (chain.back() == L'"' || chain.back() == L'\''))
        {
            ++chainBegin;
            chain.pop_back();
        }
        chain += L'|';
        ++i;
        chain += m_ExprVector[i]->stringView();
    }
    endChain();
    m_ExprVector = merged;
}

} // namespace XmlPlugin
