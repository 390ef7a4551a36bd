#include "values/XPathArgument.h"

#include "values/XPathNumberText.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"

#include <utility>

XML_TRACE_SOURCE(L"XPathArgument")

namespace XmlPlugin
{

XPathArgument::XPathArgument(const String& i_Expression) : XPathExpression(i_Expression)
{
    XML_TRACE_VALUE(L"PathArgument::XPathArgument(const String & i_Expression)", L" Expression string ", i_Expression);
    classify();
}

// cppcheck-suppress passedByValue ; no more than a pointer and a length
XPathArgument::XPathArgument(Lent i_Expression) : XPathExpression(std::in_place, i_Expression)
{
    XML_TRACE_VALUE(L"PathArgument::XPathArgument(const String & i_Expression)", L" Expression string ",
                    copyOf(i_Expression.m_Text));
    classify();
}

// cppcheck-suppress passedByValue ; no more than a pointer and a length
XPathArgument::XPathArgument(Lent i_Digits, double i_Number) noexcept
    : XPathExpression(std::in_place, i_Digits, i_Number)
{
}

// cppcheck-suppress passedByValue ; no more than a pointer and a length
XPathArgument::XPathArgument(Lent i_Path, const XPathPlan& i_Plan) noexcept
    : XPathExpression(std::in_place, i_Path), m_pPlan(&i_Plan)
{
    SetDataType(NodeSetType);
}

XPathArgument::XPathArgument(String&& i_Expression, DataType i_Type) : XPathExpression(std::move(i_Expression))
{
    const Trace trace(s_Tracer, L"PathArgument::XPathArgument(const String & i_Expression)");
    if (XPathQuickCode::isAllowed()) [[likely]]
    {
        m_Value.readNumberLater();
    }
    else
    {
        XML_TRACE(trace, TraceInformation) << L" Expression string " << text();
        classify();
    }
    SetDataType(i_Type);
}

XPathArgument::XPathArgument(double i_Expression) : XPathExpression(std::in_place, XPathValue::Printed{i_Expression})
{
    XML_TRACE_VALUE(L"PathArgument::XPathArgument(double i_Expression)", L" Expression double ", text());
}

XPathArgument::~XPathArgument() = default;

void XPathArgument::classify()
{
    m_Value.classify();
    XML_TRACE_VALUE(L"PathArgument::calculateType(const String & i_Expression)", L" m_DataType ", GetDataType());
}

void XPathArgument::calculateType(const String& i_Expression)
{
    SetDataType(XPathValue::typeOf(viewOf(i_Expression)));
    XML_TRACE_VALUE(L"PathArgument::calculateType(const String & i_Expression)", L" m_DataType ", GetDataType());
}

bool XPathArgument::isNumber(const String& i_Operand)
{
    return XPathNumberText::isNumber(viewOf(i_Operand));
}

String XPathArgument::addPrefixToXPath(std::wstring_view i_Expression, long i_Position, const Node* i_pNode)
{
    std::wstring units;
    if (i_pNode)
    {
        // D-49: an absolute path gets the parent's name too: "/x" becomes "p//x". XPath 1.0 says that it stays "/x".
        if (const Node* pParent = i_pNode->getParent())
        {
            units += viewOf(pParent->name());
            units += L'/';
        }
        if (isRelativePath(i_Expression) && i_Position >= 1)
        {
            units += viewOf(i_pNode->name());
            units += L"[position()=";
            units += viewOf(String::valueOf(i_Position));
            units += L"]/";
        }
    }
    units += i_Expression;
    String path = copyOf(units);
    XML_TRACE_VALUE(L"PathArgument::addPrefixToXPath(const String & expr, long position, Node * pNode)",
                    L"Returned Expression", path);
    return path;
}

Node* XPathArgument::getXMLRootNode(Node* i_pNode)
{
    const Trace trace(s_Tracer, L"PathArgument::getXMLRootNode(Node * pNode)");
    XML_TRACE(trace, TraceInformation) << L"pNode = " << static_cast<const void*>(i_pNode);
    Node* pRoot = i_pNode;
    while (pRoot && pRoot->getParent())
    {
        pRoot = pRoot->getParent();
    }
    return pRoot;
}

} // namespace XmlPlugin
