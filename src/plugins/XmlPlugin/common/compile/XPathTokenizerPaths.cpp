// The productions of location paths.
#include "compile/XPathTokenizer.h"

#include "compile/XPathTokenizerTrace.h"

namespace XmlPlugin
{

/// LocationPath ::= RelativeLocationPath | AbsoluteLocationPath
std::uint32_t XPathTokenizer::measureLocationPath(std::uint32_t i_Offset)
{
    const std::uint32_t relative = isRelativeLocationPath(i_Offset, false);
    return relative ? relative : isAbsoluteLocationPath(i_Offset, false);
}

/// The path stays whole: one operand with its text as written, spaces included.
void XPathTokenizer::emitLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    m_Emitter.path(m_Source.text().substr(i_Offset, i_Length));
}

/// AbsoluteLocationPath ::= AbbreviatedAbsoluteLocationPath | "/" RelativeLocationPath
std::uint32_t XPathTokenizer::isAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAbsoluteLocationPath()", i_Offset, i_Consume,
                  [&]
                  {
                      std::uint32_t length = isAbbreviatedAbsoluteLocationPath(i_Offset, i_Consume);
                      if (length == 0)
                      {
                          const std::uint32_t slash = isCharacter(i_Offset, L"/", false);
                          const std::uint32_t relative = slash ? isRelativeLocationPath(i_Offset + slash, false) : 0;
                          length = relative ? slash + relative : 0;
                      }
                      return length;
                  });
}

/// AbbreviatedAbsoluteLocationPath ::= "//" RelativeLocationPath
std::uint32_t XPathTokenizer::isAbbreviatedAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAbbreviatedAbsoluteLocationPath()", i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t slashes = isCharacter(i_Offset, L"//", false);
                      const std::uint32_t relative = slashes ? isRelativeLocationPath(i_Offset + slashes, false) : 0;
                      return relative ? slashes + relative : 0;
                  });
}

/// RelativeLocationPath ::= Step (("//" | "/") Step)*
/// A separator without a step behind it ends the path before the separator.
std::uint32_t XPathTokenizer::measureRelativeLocationPath(std::uint32_t i_Offset)
{
    std::uint32_t end = i_Offset + isStep(i_Offset, false);
    if (end == i_Offset)
    {
        return 0;
    }
    while (const std::uint32_t separator = pathSeparator(end, false))
    {
        const std::uint32_t step = isStep(end + separator, false);
        if (step == 0)
        {
            break;
        }
        end += separator + step;
    }
    return end - i_Offset;
}

void XPathTokenizer::emitRelativeLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    std::uint32_t position = i_Offset + isStep(i_Offset, true);
    while (position < i_Offset + i_Length)
    {
        position += pathSeparator(position, true);
        position += isStep(position, true);
    }
}

/// Step ::= AxisSpecifier NodeTest Predicate* | AbbreviatedStep
std::uint32_t XPathTokenizer::measureStep(std::uint32_t i_Offset)
{
    const std::uint32_t axis = isAxisSpecifier(i_Offset, false);
    const std::uint32_t test = isNodeTest(i_Offset + axis, false);
    if (test == 0)
    {
        return isAbbreviatedStep(i_Offset, false);
    }
    std::uint32_t end = i_Offset + axis + test;
    while (const std::uint32_t predicate = isPredicate(end, false))
    {
        end += predicate;
    }
    return end - i_Offset;
}

void XPathTokenizer::emitStep(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    const std::uint32_t axis = isAxisSpecifier(i_Offset, false);
    if (isNodeTest(i_Offset + axis, false) == 0)
    {
        isAbbreviatedStep(i_Offset, true);
        return;
    }
    isAxisSpecifier(i_Offset, true);
    std::uint32_t position = i_Offset + axis + isNodeTest(i_Offset + axis, true);
    while (position < i_Offset + i_Length && !isGivenUp())
    {
        position += isPredicate(position, true);
    }
}

/// AbbreviatedStep ::= ".." | "."
std::uint32_t XPathTokenizer::isAbbreviatedStep(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAbbreviatedStep()", i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t parent = isCharacter(i_Offset, L"..", i_Consume);
                      const std::uint32_t length = parent ? parent : isCharacter(i_Offset, L".", i_Consume);
                      return length;
                  });
}

/// AxisSpecifier ::= AxisName "::" | AxisName | "@" | nothing
/// D-18: an axis name counts without its "::", and the node test must begin right behind it,
/// so that an element called "child" or "self" cannot be asked for by its name. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isAxisSpecifier(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAxisSpecifier()", i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t name = isAxisName(i_Offset, i_Consume);
                      std::uint32_t length = name;
                      if (name)
                      {
                          length += isCharacter(i_Offset + name, L"::", i_Consume);
                      }
                      else
                      {
                          length = isAbbreviatedAxisSpecifier(i_Offset, i_Consume);
                      }
                      return length;
                  });
}

std::uint32_t XPathTokenizer::isAbbreviatedAxisSpecifier(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAbbreviatedAxisSpecifier()", i_Offset, i_Consume,
                  [&] { return isCharacter(i_Offset, L"@", i_Consume); });
}

/// NodeTest ::= NodeType "(" ")" | NameTest | "processing-instruction" "(" Literal ")"
std::uint32_t XPathTokenizer::isNodeTest(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isNodeTest()", i_Offset, i_Consume,
                  [&]
                  {
                      std::uint32_t length = 0;
                      const std::uint32_t type = isNodeType(i_Offset, false);
                      const std::uint32_t open = type ? isCharacter(i_Offset + type, L"(", false) : 0;
                      const std::uint32_t close = open ? isCharacter(i_Offset + type + open, L")", false) : 0;
                      if (close)
                      {
                          length = type + open + close;
                          if (i_Consume)
                          {
                              isCharacter(i_Offset + type, L"(", true);
                              isCharacter(i_Offset + type + open, L")", true);
                          }
                      }
                      else
                      {
                          // The third form begins with a name, which the name test before it takes.
                          length = isNameTest(i_Offset, i_Consume);
                      }
                      return length;
                  });
}

/// NameTest ::= "*" | NCName ":" "*" | QName
/// D-13: the second form takes the length of its "*" alone and so never fits the text. XPath 1.0
/// accepts "p:*".
std::uint32_t XPathTokenizer::isNameTest(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isNameTest()", i_Offset, i_Consume,
                  [&]
                  {
                      std::uint32_t length = isCharacter(i_Offset, L"*", i_Consume);
                      if (length == 0)
                      {
                          const std::uint32_t prefix = isNCName(i_Offset, false);
                          const std::uint32_t colon = prefix ? isCharacter(i_Offset + prefix, L":", false) : 0;
                          length = colon ? isCharacter(i_Offset + prefix + colon, L"*", false) : 0;
                          if (length == 0)
                          {
                              length = isQName(i_Offset, i_Consume);
                          }
                          else if (i_Consume)
                          {
                              isNCName(i_Offset, true);
                              isCharacter(i_Offset + prefix, L":", true);
                              isCharacter(i_Offset + prefix + colon, L"*", true);
                          }
                      }
                      return length;
                  });
}

} // namespace XmlPlugin
