// The productions of an operand that is no location path: parentheses, calls, variables, predicates.
#include "compile/XPathTokenizer.h"

#include "compile/XPathTokenizerTrace.h"
#include "functions/XPathOperator.h"

namespace XmlPlugin
{

/// "//" or "/", the former tried first.
std::uint32_t XPathTokenizer::pathSeparator(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t length = isCharacter(i_Offset, L"//", i_Consume);
    return length ? length : isCharacter(i_Offset, L"/", i_Consume);
}

/// PathExpr ::= FilterExpr ("//" | "/") RelativeLocationPath | FilterExpr | LocationPath
/// D-11: the first form takes the length of its relative path alone, so that it hardly ever
/// fits the text: "(//a)/@id" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::measurePathExpr(std::uint32_t i_Offset)
{
    const std::uint32_t filter = isFilterExpr(i_Offset, false);
    if (filter == 0)
    {
        return isLocationPath(i_Offset, false);
    }
    const std::uint32_t separator = pathSeparator(i_Offset + filter, false);
    const std::uint32_t relative = separator ? isRelativeLocationPath(i_Offset + filter + separator, false) : 0;
    return relative ? relative : filter;
}

void XPathTokenizer::emitPathExpr(std::uint32_t i_Offset, std::uint32_t)
{
    const std::uint32_t filter = isFilterExpr(i_Offset, true);
    if (filter == 0)
    {
        isLocationPath(i_Offset, true);
        return;
    }
    const std::uint32_t separator = pathSeparator(i_Offset + filter, false);
    if (separator && isRelativeLocationPath(i_Offset + filter + separator, false))
    {
        pathSeparator(i_Offset + filter, true);
        isRelativeLocationPath(i_Offset + filter + separator, true);
    }
}

/// FilterExpr ::= PrimaryExpr Predicate*
/// D-11: the predicates are emitted but not counted: "(//a)[1]" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::measureFilterExpr(std::uint32_t i_Offset)
{
    return isPrimaryExpr(i_Offset, false);
}

void XPathTokenizer::emitFilterExpr(std::uint32_t i_Offset, std::uint32_t)
{
    std::uint32_t position = i_Offset + isPrimaryExpr(i_Offset, true);
    while (const std::uint32_t predicate = isPredicate(position, true))
    {
        position += predicate;
    }
}

/// PrimaryExpr ::= VariableReference | "(" Expr ")" | FunctionCall | Literal | Number
std::uint32_t XPathTokenizer::isPrimaryExpr(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isPrimaryExpr()", i_Offset, i_Consume,
                  [&]
                  {
                      static constexpr Recogniser s_Alternatives[] = {
                          &XPathTokenizer::isVariableReference, &XPathTokenizer::parenthesised,
                          &XPathTokenizer::isFunctionCall, &XPathTokenizer::isLiteral, &XPathTokenizer::isNumber};
                      std::uint32_t length = 0;
                      for (const Recogniser alternative : s_Alternatives)
                      {
                          length = (this->*alternative)(i_Offset, i_Consume);
                          if (length)
                          {
                              break;
                          }
                      }
                      return length;
                  });
}

std::uint32_t XPathTokenizer::parenthesised(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t open = isCharacter(i_Offset, L"(", false);
    const std::uint32_t expr = open ? isExpr(i_Offset + open, false) : 0;
    const std::uint32_t close = expr ? isCharacter(i_Offset + open + expr, L")", false) : 0;
    if (close == 0)
    {
        return 0;
    }
    if (i_Consume)
    {
        isCharacter(i_Offset, L"(", true);
        isExpr(i_Offset + open, true);
        isCharacter(i_Offset + open + expr, L")", true);
    }
    return open + expr + close;
}

/// VariableReference ::= "$" QName
std::uint32_t XPathTokenizer::isVariableReference(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isVariableReference()", i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t dollar = isCharacter(i_Offset, L"$", false);
                      const std::uint32_t name = dollar ? isQName(i_Offset + dollar, false) : 0;
                      if (name && i_Consume)
                      {
                          isCharacter(i_Offset, L"$", true);
                          isQName(i_Offset + dollar, true);
                      }
                      return name ? dollar + name : 0;
                  });
}

/// FunctionCall ::= FunctionName "(" (Argument ("," Argument)*)? ")"
std::uint32_t XPathTokenizer::measureFunctionCall(std::uint32_t i_Offset)
{
    std::uint32_t end = i_Offset;
    const std::uint32_t name = isFunctionName(end, false);
    const std::uint32_t open = name ? isCharacter(end + name, L"(", false) : 0;
    if (open == 0)
    {
        return 0;
    }
    end += name + open;
    if (const std::uint32_t first = isArgument(end, false))
    {
        end += first;
        while (const std::uint32_t comma = isCharacter(end, L",", false))
        {
            const std::uint32_t argument = isArgument(end + comma, false);
            if (argument == 0)
            {
                break;
            }
            end += comma + argument;
        }
    }
    const std::uint32_t close = isCharacter(end, L")", false);
    return close ? end + close - i_Offset : 0;
}

void XPathTokenizer::emitFunctionCall(std::uint32_t i_Offset, std::uint32_t)
{
    std::uint32_t position = i_Offset + isFunctionName(i_Offset, true);
    if (isGivenUp())
    {
        return;
    }
    // Every name of the table is one that the function factory knows, so the token is an operator.
    auto* pFunction = static_cast<XPathOperator*>(m_Emitter.tokens().back());
    position += isCharacter(position, L"(", true);
    if (const std::uint32_t first = isArgument(position, true))
    {
        pFunction->setArgumentsCount(1);
        position += first;
        while (const std::uint32_t comma = isCharacter(position, L",", false))
        {
            isCharacter(position, L",", true);
            position += comma + isArgument(position + comma, true);
            pFunction->setArgumentsCount(pFunction->getArgumentsCount() + 1);
        }
    }
    isCharacter(position, L")", true);
}

/// Predicate ::= "[" Expr "]"
std::uint32_t XPathTokenizer::isPredicate(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isPredicate()", i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t open = isCharacter(i_Offset, L"[", false);
                      const std::uint32_t expr = open ? isPredicateExpr(i_Offset + open, false) : 0;
                      const std::uint32_t close = expr ? isCharacter(i_Offset + open + expr, L"]", false) : 0;
                      if (close && i_Consume)
                      {
                          isCharacter(i_Offset, L"[", true);
                          isPredicateExpr(i_Offset + open, true);
                          isCharacter(i_Offset + open + expr, L"]", true);
                      }
                      return close ? open + expr + close : 0;
                  });
}

} // namespace XmlPlugin
