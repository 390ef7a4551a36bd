#include "advice/Suspects.h"

#include "advice/ExpressionText.h"
#include "xpathlanguage/XPathAxisTable.h"

#include <algorithm>
#include <iterator>

namespace Text = ExpressionText;

namespace
{

constexpr std::string_view s_MissingFunctions[] = {"id", "lang", "namespace-uri"};
constexpr std::string_view s_NodeTypes[] = {"text", "node", "comment", "processing-instruction"};
constexpr std::size_t s_None = std::string_view::npos;

template <std::size_t t_Count>
bool isOneOf(const std::string_view (&i_List)[t_Count], std::string_view i_Name)
{
    return std::find(std::begin(i_List), std::end(i_List), i_Name) != std::end(i_List);
}

/// Scans an expression once, from left to right.
class Search
{
public:
    explicit Search(std::string_view i_Expression) : m_Whole(i_Expression), m_Text(Text::withoutLiterals(i_Expression))
    {
    }

    std::vector<Suspect> run()
    {
        while (m_Place < m_Text.size())
        {
            const char byte = m_Text[m_Place];
            if (byte == ' ')
            {
                ++m_Place;
            }
            else if (Text::isNameStart(byte) && !Text::isDigit(m_Previous))
            {
                lookAtName();
            }
            else if (byte == '\'' || byte == '"')
            {
                passLiteral();
            }
            else if (!lookAtSign(byte))
            {
                pass(1);
            }
        }
        return std::move(m_Found);
    }

private:
    std::string_view written(std::size_t i_Begin, std::size_t i_End) const
    {
        return m_Whole.substr(i_Begin, i_End - i_Begin);
    }

    /// Skips \p i_Length bytes that are not suspicious.
    void pass(std::size_t i_Length)
    {
        m_Previous = m_Text[m_Place + i_Length - 1];
        m_Place += i_Length;
        m_IsNodeTest = false;
    }

    void passLiteral()
    {
        const std::size_t end = m_Text.find(m_Text[m_Place], m_Place + 1);
        pass(end == s_None ? m_Text.size() - m_Place : end + 1 - m_Place);
    }

    void suspect(std::size_t i_End, std::string i_Replacement, int i_Difference, std::string i_Text)
    {
        m_Previous = i_Replacement.empty() ? m_Previous : i_Replacement.back();
        m_Found.push_back({m_Place, i_End - m_Place, std::move(i_Replacement), {i_Difference, std::move(i_Text)}});
        m_Place = i_End;
        m_IsNodeTest = false;
    }

    void lookAtName()
    {
        const std::size_t end = Text::nameEnd(m_Text, m_Place);
        const std::string_view name = std::string_view(m_Text).substr(m_Place, end - m_Place);
        if (lookAtColon(end, name) || lookAtCall(end, name) || lookAtAxisName(end, name))
        {
            return;
        }
        pass(end - m_Place);
        m_IsNodeTest = true;
        lookAtMinus();
    }

    bool lookAtColon(std::size_t i_End, std::string_view i_Name)
    {
        const std::string_view rest = std::string_view(m_Text).substr(i_End);
        if (rest.starts_with("::"))
        {
            const std::string shown(XPathLanguage::hidingAxis(i_Name));
            if (!shown.empty())
            {
                suspect(i_End, shown, 17,
                        "the axis '" + std::string(i_Name) + "' is hidden by '" + shown + "'; write " + shown +
                            "::, or // for all levels");
            }
            else
            {
                pass(i_End - m_Place);
            }
            pass(2);
            return true;
        }
        if (rest.starts_with(":*"))
        {
            suspect(i_End + 2, "*", 13, "'*' cannot have a prefix; write '*' alone");
            return true;
        }
        const std::size_t localEnd = rest.starts_with(':') ? Text::nameEnd(m_Text, i_End + 1) : i_End + 1;
        if (localEnd == i_End + 1)
        {
            return false;
        }
        const std::string whole(written(m_Place, localEnd));
        suspect(localEnd, "x", 12,
                m_Previous == '@' ? "a name with a prefix is not recognised; @* reaches the attribute '" + whole + "'"
                                  : "a name with a prefix is not recognised; write *[name()='" + whole + "']");
        return true;
    }

    bool lookAtCall(std::size_t i_End, std::string_view i_Name)
    {
        const std::size_t open = Text::skipSpaces(m_Text, i_End);
        if (open >= m_Text.size() || m_Text[open] != '(')
        {
            return false;
        }
        if (isOneOf(s_MissingFunctions, i_Name))
        {
            suspect(i_End, "string", 58, "there is no function '" + std::string(i_Name) + "'");
            return true;
        }
        const std::size_t close = Text::closingOf(m_Text, open);
        // With a second pair of parentheses it is recognised, but selects nothing.
        if (!isOneOf(s_NodeTypes, i_Name) || close == s_None ||
            std::string_view(m_Text).substr(close + 1).starts_with("()"))
        {
            return false;
        }
        const std::string whole(written(m_Place, close + 1));
        suspect(close + 1, "*", 14,
                "'" + whole + "' is not a node test here" +
                    (i_Name == "node" ? "; write '*' for the elements"
                                      : ", and elements keep no text (D-27); ask for an attribute, as in a/@name"));
        m_IsNodeTest = true;
        return true;
    }

    bool lookAtAxisName(std::size_t i_End, std::string_view i_Name)
    {
        const std::string_view axis = Text::leadingAxis(i_Name);
        if (axis.empty() || m_Previous == '@' || m_Previous == ':')
        {
            return false;
        }
        const std::string whole(i_Name);
        suspect(i_End, "x", 18, "'" + std::string(axis) + "' is an axis name here; write *[name()='" + whole + "']");
        m_IsNodeTest = true;
        return true;
    }

    /// A name continues across spaces if a minus sign follows them.
    void lookAtMinus()
    {
        const std::size_t minus = Text::skipSpaces(m_Text, m_Place);
        if (minus > m_Place && minus < m_Text.size() && m_Text[minus] == '-')
        {
            suspect(minus + 1, " +", 2,
                    "a minus sign after a name and a space is part of the name; put what comes before it in "
                    "parentheses");
        }
    }

    bool lookAtSign(char i_Byte)
    {
        switch (i_Byte)
        {
        case '\t':
        case '\r':
        case '\n':
            suspect(m_Place + 1, " ", 1, "only spaces may separate tokens, not tabs or line feeds");
            return true;
        case '.':
            return lookAtFullStop();
        case '/':
            return lookAtSlash();
        case '[':
            return lookAtBracket();
        default:
            return false;
        }
    }

    bool lookAtFullStop()
    {
        const bool isNumber = m_Place + 1 < m_Text.size() && Text::isDigit(m_Text[m_Place + 1]);
        if (!isNumber || Text::isNameByte(m_Previous))
        {
            return false;
        }
        suspect(m_Place + 1, "0.", 4, "a number cannot begin with a full stop; write a 0 before it");
        return true;
    }

    /// Neither a path nor a predicate may follow a parenthesis, a call or a literal.
    bool isAfterPrimary() const
    {
        return !m_IsNodeTest && (m_Previous == ')' || m_Previous == '\'' || m_Previous == '"');
    }

    bool lookAtSlash()
    {
        const std::size_t end = m_Place + (std::string_view(m_Text).substr(m_Place).starts_with("//") ? 2 : 1);
        if (isAfterPrimary())
        {
            suspect(end, "|", 11,
                    "no path can follow a parenthesis or a call; write the whole path without them, as in //book/@id");
            return true;
        }
        const std::size_t next = Text::skipSpaces(m_Text, end);
        const bool isLast = next >= m_Text.size() || std::string_view(")]|=<>!+-,").find(m_Text[next]) != s_None;
        const bool isFirst = m_Previous == 0 || std::string_view("([|=<>+-,").find(m_Previous) != s_None;
        if (end == m_Place + 1 && isFirst && isLast)
        {
            suspect(end, "/*", 16, "the root alone cannot be selected; '/*' is the document element");
            return true;
        }
        pass(end - m_Place);
        return true;
    }

    bool lookAtBracket()
    {
        const std::size_t close = Text::closingOf(m_Text, m_Place);
        if (!isAfterPrimary() || close == s_None)
        {
            return false;
        }
        suspect(close + 1, "", 11,
                "no predicate can follow a parenthesis or a call; put it after a step, as in //book[1]");
        return true;
    }

    std::string_view m_Whole;
    std::string m_Text; ///< without the contents of literals
    std::size_t m_Place = 0;
    char m_Previous = 0;       ///< the last byte before the position that is not a space; 0 at the start
    bool m_IsNodeTest = false; ///< that byte ends a node test
    std::vector<Suspect> m_Found;
};

} // namespace

std::vector<Suspect> findSuspects(std::string_view i_Expression)
{
    return Search(i_Expression).run();
}
