#include "functions/XPathNumberFunctions.h"

#include "functions/XPathStringFunctions.h"
#include "values/XPathArgument.h"
#include "values/XPathNumberText.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cmath>
#include <cstdint>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

XPathNumber numberOfNodes(const XPathExpression& i_Nodes)
{
    const String written = XPathFunction_string::convert(i_Nodes);
    const std::wstring_view text = removeQuotes(viewOf(written));
    double number = 0.0;
    const bool isNumber = XPathNumberText::readOperand(text, number);
    const Trace trace(s_Tracer, L"TErrorCode XPathFunction_number::evaluate()");
    XML_TRACE(trace, TraceInformation) << L"XPathFunction_number string from node " << copyOf(text) << L" Type "
                                       << static_cast<int>(XPathValue::typeOf(text));
    return isNumber ? XPathNumber{number} : XPathNumber::special(NaNType);
}

XPathLentText textOf(const XPathOutputElement& i_Record)
{
    return i_Record.m_Value.isEmpty() ? i_Record.m_NodeText : i_Record.m_Value;
}

/// An operand of each record's text leaves its records.
TRACE_COLD void traceOperands(const XPathOutputList& i_Records)
{
    for (const XPathOutputElement* pRecord : i_Records)
    {
        XPathArgument(copyOf(textOf(*pRecord).view()));
    }
}

/// Adds the numbers of all records; special `NaNType` when one of them reads as none.
XPathNumber sumOfNodes(const XPathOutputList& i_Records)
{
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
    {
        traceOperands(i_Records);
    }
    double total = 0.0;
    for (const XPathOutputElement* pRecord : i_Records)
    {
        const XPathLentText text = textOf(*pRecord);
        double number = 0.0;
        if (!XPathNumberText::readOperand(text.view(), number))
        {
            return XPathNumber::special(NaNType);
        }
        total += number;
    }
    return {total};
}

} // namespace

// --- number and sum -----------------------------------------------------------------------------

XPathNumber XPathFunction_number::convert(const XPathExpression& i_Value)
{
    switch (i_Value.GetDataType())
    {
    case NumberType:
    {
        const XPathNumber number = XPathNumber::of(i_Value);
        return number.isSpecial() ? XPathNumber::special(number.m_Limit) : number;
    }
    case BooleanType:
        return {i_Value.GetExpressionNumb()};
    case NodeSetType:
        return numberOfNodes(i_Value);
    case StringType:
        if (XPathNumberText::isNumber(i_Value.stringView()))
        {
            return XPathNumber::of(i_Value);
        }
        return XPathNumber::special(NaNType);
    default:
        return XPathNumber::special(NaNType);
    }
}

TErrorCode XPathFunction_number::evaluate()
{
    // D-68: number() without an argument is not a number. XPath 1.0 takes the context node.
    createOutputExpression(m_Parameters.empty() ? XPathNumber::special(NaNType) : convert(parameter(0)));
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_number::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_sum::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        // D-64: sum('5') is 5. XPath 1.0 refuses what is no node set.
        const XPathExpression& value = parameter(0);
        createOutputExpression(value.GetDataType() == NodeSetType ? sumOfNodes(value.getNodes())
                                                                  : XPathFunction_number::convert(value));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_sum::evaluate()", L"result = ", result);
    return result;
}

// --- Rounding -----------------------------------------------------------------------------------

TErrorCode XPathFunction_floor::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        const XPathNumber number = XPathNumber::of(parameter(0));
        createOutputExpression(number.isSpecial() ? XPathNumber::special(number.m_Limit)
                                                  : XPathNumber{std::floor(number.m_Value)});
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_floor::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_ceiling::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        const XPathNumber number = XPathNumber::of(parameter(0));
        createOutputExpression(number.isSpecial() ? XPathNumber::special(number.m_Limit)
                                                  : XPathNumber{std::ceil(number.m_Value)});
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_ceiling::evaluate()", L"result = ", result);
    return result;
}

XPathNumber XPathFunction_round::round(const XPathNumber& i_Number) noexcept
{
    constexpr double limit = 0x1p63;
    if (i_Number.isSpecial())
    {
        return XPathNumber::special(i_Number.m_Limit);
    }
    const double number = i_Number.m_Value;
    if (!(number >= -limit && number < limit))
    {
        return {number};
    }
    const auto whole = static_cast<double>(static_cast<std::int64_t>(number));
    const double fraction = number - whole;
    // D-75: the result is made from an integer and never a negative zero: round(-0.4) is 0. XPath 1.0 says -0.
    if (fraction >= 0.5)
    {
        return {whole + 1.0};
    }
    if (fraction < -0.5)
    {
        return {whole - 1.0};
    }
    return {whole};
}

TErrorCode XPathFunction_round::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        createOutputExpression(round(XPathNumber::of(parameter(0))));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_round::evaluate()", L"result = ", result);
    return result;
}

} // namespace XmlPlugin
