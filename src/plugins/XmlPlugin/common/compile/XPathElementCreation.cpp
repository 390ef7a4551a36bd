// How a token becomes an element: the part of XPathExpression that knows which tokens are operators.
#include "compile/XPathElements.h"
#include "functions/XPathFunction.h"
#include "functions/XPathOperator.h"
#include "values/XPathArgument.h"
#include "values/XPathExpression.h"
#include "values/XmlTrace.h"

#include <memory>

XML_TRACE_SOURCE(L"XPathExpression")

namespace XmlPlugin
{

XPathExpression* XPathExpression::create(const String& i_Expression, const String& i_NextToken,
                                         XPathExpression* i_pPrevElement)
{
    const Trace trace(s_Tracer, L"XPathExpression::create");
    std::unique_ptr<XPathFunction> pFunction(
        XPathFunctionFactory::selectOperator(i_Expression, i_NextToken, i_pPrevElement));
    if (!pFunction)
    {
        XML_TRACE(trace, TraceInformation) << L" Argument created " << i_Expression;
        return new XPathArgument(i_Expression);
    }
    auto pOperator = std::make_unique<XPathOperator>(i_Expression, i_pPrevElement, pFunction.get());
    static_cast<void>(pFunction.release()); // the operator's now
    XML_TRACE(trace, TraceInformation) << L" Operator created " << i_Expression;
    return pOperator.release();
}

XPathExpression& XPathExpression::create(std::wstring_view i_Expression, std::wstring_view i_NextToken,
                                         XPathElements& io_Elements)
{
    const Trace trace(s_Tracer, L"XPathExpression::create");
    const XPathFunctionChoice choice = XPathFunctionFactory::choose(i_Expression, i_NextToken);
    if (!choice)
    {
        XML_TRACE(trace, TraceInformation) << L" Argument created " << String(i_Expression.data(), i_Expression.size());
        return io_Elements.addArgument(i_Expression);
    }
    XPathOperator& created = io_Elements.addOperator(choice);
    XML_TRACE(trace, TraceInformation) << L" Operator created " << String(i_Expression.data(), i_Expression.size());
    return created;
}

} // namespace XmlPlugin
