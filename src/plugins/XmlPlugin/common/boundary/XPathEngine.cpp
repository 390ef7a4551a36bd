#include "boundary/XPathEngine.h"

#include "boundary/XmlCache.h"
#include "compile/XPathExpressionsParser.h"
#include "values/XPathBudget.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <new>

XML_TRACE_SOURCE(L"XPathEngine")

namespace XmlPlugin
{

TErrorCode XPathEngine::start(std::wstring_view i_XPath, std::wstring_view i_File, XPathOutputList& io_Output)
{
    const Trace trace(s_Tracer, L"XPathEngine::start");
    XML_TRACE_AT(trace, TraceInformation, 34)
        << L"Parsing [" << copyOf(i_XPath) << L"] for the XML file " << copyOf(i_File);
    XmlCache* pCache = XmlCache::getInstance();
    if (!pCache)
    {
        throw std::bad_alloc();
    }
    Node* pRoot = nullptr;
    TErrorCode code = pCache->getDocument(i_File, pRoot);
    if (code == XML_SUCCESS)
    {
        XML_TRACE_AT(trace, TraceInformation, 45) << L"result ok";
        if (!pRoot)
        {
            XML_TRACE_AT(trace, TraceError, 48) << L"Start Node empty. Error in xml parsing";
        }
        const XPathBudget budget;
        XPathExpressionsParser parser(XPathExpression::Lent{i_XPath});
        code = parser.runParser(pRoot);
        if (code == XML_SUCCESS)
        {
            XML_TRACE_AT(trace, TraceInformation, 56) << L" result OK, getValues to output";
            code = parser.getValues(io_Output);
        }
        if (XPathBudget::isSpent())
        {
            XML_TRACE(trace, TraceError) << L"Given up: the evaluation has visited more than " << XPathBudget::limit()
                                         << L" nodes";
            io_Output.clear();
            code = XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
        }
    }
    XML_TRACE_AT(trace, TraceInformation, 61) << L" result = " << code;
    return code;
}

} // namespace XmlPlugin
