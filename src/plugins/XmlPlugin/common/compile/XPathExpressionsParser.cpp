#include "compile/XPathExpressionsParser.h"

#include "compile/XPathTokenizer.h"
#include "functions/XPathOperator.h"
#include "values/XPathPrinter.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <limits>

XML_TRACE_SOURCE(L"XPathExpressionsParser")

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

XPathExpressionsParser::XPathExpressionsParser(XPathExpression::Lent i_XPath)
    : m_NoValue(std::numeric_limits<double>::quiet_NaN())
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::XPathExpressionsParser(const String & i_XPath)");
    XPathTokenizer tokenizer(i_XPath.m_Text, m_Elements);
    if (tokenizer.readPostfix(m_XPathExpressionsVector))
    {
        markCounted();
        return;
    }
    m_TokenizerStatus = tokenizer.start();
    if (m_TokenizerStatus != XML_SUCCESS)
    {
        XML_TRACE(trace, TraceInformation) << L"Tokenizing error";
        return;
    }
    m_XPathExpressionsVector = tokenizer.outVector();
    XML_TRACE(trace, TraceInformation) << L" Parsed Expr = " << dumpElements(m_XPathExpressionsVector);

    XPathExpressionsVector postfix;
    postfix.reserve(m_XPathExpressionsVector.size());
    m_XPathExpressionsVector = doTrans(postfix);
    XML_TRACE(trace, TraceInformation) << L"Expr transformed =" << dumpElements(m_XPathExpressionsVector);
    if (XPathQuickCode::isAllowed())
    {
        markCounted();
    }
}

XPathExpressionsParser::~XPathExpressionsParser() = default;

/// Of the argument of `count` nothing else is read.
void XPathExpressionsParser::markCounted()
{
    for (std::size_t i = 1; i < m_XPathExpressionsVector.size(); ++i)
    {
        XPathExpression& argument = *m_XPathExpressionsVector[i - 1];
        const XPathExpression& call = *m_XPathExpressionsVector[i];
        if (call.textView() == L"count"sv && call.isOperator() && call.getArgumentsCount() == 1 &&
            !argument.isOperator())
        {
            argument.setOnlyCounted(true);
        }
    }
    markFirstEnough();
}

/// Only `count` asks for the number of a node set. Everything else is answered by one of several records that are
/// alike: whether there is one, its text, its number and whether they add up to one.
void XPathExpressionsParser::markFirstEnough()
{
    for (std::size_t i = 0; i < m_XPathExpressionsVector.size(); ++i)
    {
        const XPathExpression& expression = *m_XPathExpressionsVector[i];
        const bool isCount = expression.isOperator() && expression.textView() == L"count"sv;
        if (isCount && (i == 0 || !m_XPathExpressionsVector[i - 1]->isOnlyCounted()))
        {
            return;
        }
    }
    for (XPathExpression* pExpression : m_XPathExpressionsVector)
    {
        pExpression->setFirstEnough(!pExpression->isOperator() && !pExpression->isOnlyCounted());
    }
}

// --- Infix to postfix ---------------------------------------------------------------------------

XPathExpressionsVector& XPathExpressionsParser::doTrans(XPathExpressionsVector& o_Output)
{
    const Trace trace(s_Tracer, L" XPathExpressionsParser::doTrans() ");
    XML_TRACE(trace, TraceInformation) << L" XPathExpressionsParser::doTrans() ";
    o_Output.clear();
    for (XPathExpression* pExpression : m_XPathExpressionsVector)
    {
        stackExpression(pExpression, o_Output);
    }
    m_OperatorStack.finish(o_Output);
    XML_TRACE(trace, TraceInformation) << L"output.size = " << o_Output.size();
    return o_Output;
}

void XPathExpressionsParser::stackExpression(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output)
{
    const Trace trace(s_Tracer, L" XPathExpressionsParser::stackExpression");
    const std::wstring_view text = i_pExpression->textView();
    if (!i_pExpression->isOperator())
    {
        io_Output.push_back(i_pExpression);
        XML_TRACE(trace, TraceInformation) << L"Expression " << i_pExpression->text() << L" pushed to expressionVector";
    }
    else if (isToken(text, L'('))
    {
        m_OperatorStack.open(i_pExpression);
        XML_TRACE(trace, TraceInformation) << L"( - expression goes on stack";
    }
    else if (isToken(text, L')') || isToken(text, L','))
    {
        XML_TRACE(trace, TraceInformation) << i_pExpression->text() << L" expression goes on stack";
        gotParen(i_pExpression, io_Output);
    }
    else
    {
        XML_TRACE(trace, TraceInformation) << L"gotOper for " << i_pExpression->text();
        gotOper(i_pExpression, io_Output);
    }
}

void XPathExpressionsParser::gotOper(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output)
{
    const Trace trace(s_Tracer, L" XPathExpressionsParser::gotOper");
    XML_TRACE(trace, TraceInformation) << L"i_pExpression = " << i_pExpression->text();
    while (!m_OperatorStack.empty())
    {
        const XPathExpression* pTop = m_OperatorStack.top();
        XML_TRACE(trace, TraceInformation) << L"pTop =" << pTop->text();
        if (m_OperatorStack.isOpen())
        {
            XML_TRACE(trace, TraceInformation) << L" ( - put on stack ";
            break;
        }
        XML_TRACE(trace, TraceInformation) << L" pTop->getPriority() =" << pTop->getPriority();
        XML_TRACE(trace, TraceInformation) << L"i_pExpression->getPriority() =" << i_pExpression->getPriority();
        const int waiting = pTop->getPriority(); // with a record of its own
        if (!XPathOperatorStack::leavesBefore(waiting, i_pExpression->getPriority()))
        {
            break;
        }
        m_OperatorStack.releaseTop(io_Output);
    }
    m_OperatorStack.push(*i_pExpression);
    XML_TRACE(trace, TraceInformation) << L"pExpression =" << i_pExpression->text() << L"goes on stack ";
}

void XPathExpressionsParser::gotParen(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output)
{
    const Trace trace(s_Tracer, L" XPathExpressionsParser::gotParen");
    XML_TRACE(trace, TraceInformation) << L"i_pExpression = " << i_pExpression->text();
    for (;;)
    {
        if (m_OperatorStack.empty())
        {
            return;
        }
        const XPathExpression* pTop = m_OperatorStack.top();
        XML_TRACE(trace, TraceInformation) << L"pExpression from top = " << pTop->text();
        if (!m_OperatorStack.releaseInner(io_Output))
        {
            break;
        }
        XML_TRACE(trace, TraceInformation) << L"pOper " << pTop->text() << L"goes on Vector";
    }

    const XPathExpression* pOpen = m_OperatorStack.top();
    if (isToken(i_pExpression->textView(), L','))
    {
        // The next argument is enclosed by the same parenthesis.
        XML_TRACE(trace, TraceInformation) << L"pOperator " << pOpen->text() << L"goes on stack";
        return;
    }
    m_OperatorStack.drop();
    if (pOpen->isInfix())
    {
        XML_TRACE(trace, TraceInformation) << L" Not isInfix && not coma ";
        if (m_OperatorStack.empty())
        {
            return;
        }
        const XPathExpression* pFunction = m_OperatorStack.top();
        m_OperatorStack.releaseTop(io_Output);
        XML_TRACE(trace, TraceInformation) << L"pOperator " << pFunction->text() << L" goes to Vector";
    }
}

// --- Evaluation ---------------------------------------------------------------------------------

TErrorCode XPathExpressionsParser::runParser(Node* i_pStartNode)
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::runParser(Node *i_pStartNode)");
    m_pStartNode = i_pStartNode;
    TErrorCode code = m_TokenizerStatus;
    if (code == XML_SUCCESS)
    {
        code = doParse();
    }
    if (code == XML_SUCCESS && m_pResult)
    {
        m_OutputType = m_pResult->GetDataType();
        XML_TRACE(trace, TraceInformation) << L"m_OutputType = " << m_OutputType;
    }
    XML_TRACE(trace, TraceInformation) << L"result = " << code;
    return code;
}

void XPathExpressionsParser::resetElements()
{
    m_pResult = nullptr;
    m_IsHandedOver = false;
    if (m_IsFresh)
    {
        m_IsFresh = false;
        return;
    }
    releaseNodeSets();
    for (XPathExpression* pExpression : m_XPathExpressionsVector)
    {
        if (pExpression->isOperator())
        {
            static_cast<XPathOperator*>(pExpression)->reset();
        }
    }
}

void XPathExpressionsParser::releaseNodeSets() noexcept
{
    // Only operands hold node sets: no operator and no function makes one.
    for (XPathExpression* pExpression : m_XPathExpressionsVector)
    {
        if (!pExpression->getNodes().empty())
        {
            pExpression->takeNodes();
        }
    }
}

void XPathExpressionsParser::prepare(XPathExpression& io_Expression) const
{
    io_Expression.setStartNode(m_pStartNode);
    io_Expression.setRootPosition(m_RootPosition);
}

/// Nothing for every operand but a location path, and for every result.
void XPathExpressionsParser::evaluatePath(XPathExpression& io_Operand)
{
    if (io_Operand.GetDataType() == NodeSetType)
    {
        io_Operand.EvaluateXPath();
    }
}

TErrorCode XPathExpressionsParser::doParse()
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::doParse()");
    XML_TRACE(trace, TraceInformation) << L" m_XPathExpressionsVector.size()" << m_XPathExpressionsVector.size();
    resetElements();
    TErrorCode code = XML_SUCCESS;
    TErrorCode lastFailure = XML_SUCCESS;
    XPathExpressionsVector localStack;
    localStack.reserve(m_XPathExpressionsVector.size());
    for (XPathExpression* pExpression : m_XPathExpressionsVector)
    {
        XML_TRACE(trace, TraceInformation)
            << L"pExpression =" << pExpression->text() << L"Start Node = " << static_cast<const void*>(m_pStartNode)
            << L" RootPosition = " << m_RootPosition;
        prepare(*pExpression);
        if (!pExpression->isOperator())
        {
            XML_TRACE(trace, TraceInformation) << L"isOperator = false. Expression pushed on localstack";
            localStack.push_back(pExpression);
            continue;
        }
        code = evaluateOperator(*pExpression, localStack);
        if (code != XML_SUCCESS)
        {
            lastFailure = code;
        }
    }

    if (localStack.empty())
    {
        XML_TRACE(trace, TraceInformation) << L"XPATH error, localStack.size() = 0";
        code = lastFailure != XML_SUCCESS ? lastFailure : XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
    }
    else
    {
        XPathExpression* pValue = localStack.back();
        XML_TRACE(trace, TraceInformation) << L"Argument to evaluate " << pValue->text();
        evaluatePath(*pValue);
        m_pResult = pValue == &m_NoValue ? nullptr : pValue;
    }
    XML_TRACE(trace, TraceInformation) << L"result =" << code;
    return code;
}

/// Takes the operator's arguments from the stack, the last written one first, and puts its result
/// in their place. A failed operator leaves nothing there; one without a result leaves "no value".
/// So there is never an operator among the arguments.
TErrorCode XPathExpressionsParser::evaluateOperator(XPathExpression& io_Operator, XPathExpressionsVector& io_Stack)
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::doParse()");
    io_Operator.setEvalContext(m_EvalContext);
    const int count = io_Operator.getArgumentsCount();
    XML_TRACE(trace, TraceInformation) << L"Arguments to read= " << count << L" for " << io_Operator.text()
                                       << L" function ";
    XPathExpressionsVector arguments;
    for (int i = 0; i < count && !io_Stack.empty(); ++i)
    {
        XPathExpression* pTop = io_Stack.back();
        XML_TRACE(trace, TraceInformation) << L"Argument " << pTop->text();
        io_Stack.pop_back();
        evaluatePath(*pTop);
        arguments.push_back(pTop);
    }
    const TErrorCode code = io_Operator.evaluate(arguments);
    if (code != XML_SUCCESS)
    {
        return code;
    }
    XPathExpression* pResult = io_Operator.getOutputArgument();
    if (!pResult)
    {
        pResult = &m_NoValue;
    }
    XML_TRACE(trace, TraceInformation) << L"pXPathOp->getOutputArgument() = " << pResult->text();
    XML_TRACE(trace, TraceInformation) << L"pXPathOp->getDataType() = " << pResult->GetDataType();
    io_Stack.push_back(pResult);
    return XML_SUCCESS;
}

// --- Output -------------------------------------------------------------------------------------

TErrorCode XPathExpressionsParser::getValues(XPathOutputList& io_Output)
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::getValues");
    TErrorCode code = XML_SUCCESS;
    if (!m_pResult)
    {
        code = XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
    }
    else
    {
        switch (m_OutputType)
        {
        case BooleanType:
            XML_TRACE(trace, TraceInformation) << L"Boolean Type output";
            code = calculateBooleanOutput(io_Output);
            break;
        case StringType:
            XML_TRACE(trace, TraceInformation) << L"String Type output";
            io_Output.addScalar(m_pResult->stringView());
            break;
        case NumberType:
            XML_TRACE(trace, TraceInformation) << L"Number Type output";
            io_Output.addScalar(m_pResult->stringView());
            break;
        case NodeSetType:
            XML_TRACE(trace, TraceInformation) << L"NodeSet Type output";
            if (m_IsHandedOver)
            {
                doParse();
            }
            if (m_pResult)
            {
                io_Output = m_pResult->takeNodes();
            }
            m_IsHandedOver = true;
            break;
        default:
            break;
        }
    }
    XML_TRACE(trace, TraceInformation) << L"output size = " << io_Output.size();
    XML_TRACE(trace, TraceInformation) << L"result = " << code;
    return code;
}

TErrorCode XPathExpressionsParser::calculateBooleanOutput(XPathOutputList& io_Output)
{
    const Trace trace(s_Tracer, L"XPathExpressionsParser::calculateBooleanOutpu");
    if (!m_pResult)
    {
        XML_TRACE(trace, TraceError) << L" XML_PLUGIN_ERROR_XPATH_PARSER_ERROR ";
        return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
    }
    const bool value = m_pResult->GetExpressionBool();
    XML_TRACE(trace, TraceInformation) << (value ? L" output set on TRUE" : L" output set on FALSE");
    io_Output.addScalar(value ? L"true"sv : L"false"sv);
    XML_TRACE(trace, TraceInformation) << L"result = " << 0;
    return XML_SUCCESS;
}

} // namespace XmlPlugin
