#include "compile/XPathElements.h"

#include "functions/XPathOperator.h"
#include "values/XPathArgument.h"

#include <memory>
#include <new>

namespace XmlPlugin
{

XPathElements::~XPathElements()
{
    for (XPathExpression* pElement : m_Elements)
    {
        std::destroy_at(pElement);
    }
}

XPathArgument& XPathElements::addArgument(std::wstring_view i_Text)
{
    m_Elements.reserve(m_Elements.size() + 1); // nothing can fail once the element is made
    auto* pArgument = new (allocate(sizeof(XPathArgument))) XPathArgument(XPathExpression::Lent{i_Text});
    m_Elements.push_back(pArgument);
    return *pArgument;
}

XPathArgument& XPathElements::addNumber(std::wstring_view i_Digits, double i_Number)
{
    m_Elements.reserve(m_Elements.size() + 1);
    auto* pArgument = new (allocate(sizeof(XPathArgument))) XPathArgument(XPathExpression::Lent{i_Digits}, i_Number);
    m_Elements.push_back(pArgument);
    return *pArgument;
}

XPathArgument& XPathElements::addPath(std::wstring_view i_Text, const XPathPlan& i_Plan)
{
    m_Elements.reserve(m_Elements.size() + 1);
    auto* pArgument = new (allocate(sizeof(XPathArgument))) XPathArgument(XPathExpression::Lent{i_Text}, i_Plan);
    m_Elements.push_back(pArgument);
    return *pArgument;
}

XPathOperator& XPathElements::addOperator(const XPathFunctionChoice& i_Choice)
{
    m_Elements.reserve(m_Elements.size() + 1);
    auto* pOperator = new (allocate(sizeof(XPathOperator))) XPathOperator(i_Choice, *this);
    m_Elements.push_back(pOperator);
    return *pOperator;
}

} // namespace XmlPlugin
