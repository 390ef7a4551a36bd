#pragma once

#include "functions/XPathOperator.h"
#include "values/XPathArgument.h"
#include "xmlproxy/Node.h"

#include <cstdlib>
#include <deque>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Makes operands from a short notation, so that a test row holds a whole call, and calls functions
/// and operators as the evaluation of an expression does.
///
/// | notation                 | operand                                                        |
/// |--------------------------|----------------------------------------------------------------|
/// | `5`, `-2.5`              | a computed number                                              |
/// | `-0`                     | 0 with the negative-zero flag                                  |
/// | `nan` `inf` `-inf` `zero`| a number of that kind; `inf:3` stores 3 instead of 0           |
/// | `raw nan`, `raw -0`      | a computed number whose double is this one                     |
/// | `true` `false`           | a boolean                                                      |
/// | `'abc'`, `"5"`, `a/b`    | an operand as written in an expression                         |
/// | `text abc`               | a computed string                                              |
/// | `nodes 3|7`              | a node set, one record for each value; `nodes` is an empty one |
/// | `none`                   | no value                                                       |
///
/// Ownership: owns everything that it has made.
class Values
{
public:
    Values() = default;
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    XmlPlugin::XPathExpression* operator()(std::string_view i_Notation)
    {
        if (i_Notation == "none")
        {
            return noValue();
        }
        if (i_Notation == "true" || i_Notation == "false")
        {
            return computed(i_Notation == "true" ? 1.0 : 0.0, XmlPlugin::BooleanType);
        }
        if (i_Notation.starts_with("raw "))
        {
            return computed(number(i_Notation.substr(4)), XmlPlugin::NumberType);
        }
        if (i_Notation.starts_with("text "))
        {
            return text(i_Notation.substr(5));
        }
        if (i_Notation.starts_with("nodes"))
        {
            return nodes(i_Notation.substr(5));
        }
        if (XmlPlugin::XPathExpression* pSpecial = special(i_Notation))
        {
            return pSpecial;
        }
        if (i_Notation.find_first_not_of("0123456789.-+e") == std::string_view::npos)
        {
            return computed(number(i_Notation), XmlPlugin::NumberType);
        }
        return keep(std::make_unique<XmlPlugin::XPathArgument>(String(i_Notation.data(), i_Notation.size())));
    }

    /// A record of a node; its value text is given, the source node stays the caller's.
    void addRecord(XmlPlugin::XPathExpression& io_NodeSet, std::string_view i_Value, const Node* i_pNode = nullptr,
                   std::string_view i_NodeText = {})
    {
        m_Records.push_back({keepText(i_NodeText), keepText(i_Value), 0, i_pNode});
        io_NodeSet.addNode(&m_Records.back());
    }

    /// An argument vector: the last argument first.
    XmlPlugin::XPathExpressionsVector arguments(const std::vector<std::string>& i_Arguments)
    {
        XmlPlugin::XPathExpressionsVector list;
        for (auto argument = i_Arguments.rbegin(); argument != i_Arguments.rend(); ++argument)
        {
            list.push_back((*this)(*argument));
        }
        return list;
    }

private:
    XmlPlugin::XPathLentText keepText(std::string_view i_Text)
    {
        return XmlPlugin::XPathLentText(viewOf(m_Texts.emplace_back(i_Text.data(), i_Text.size())));
    }

    static double number(std::string_view i_Text) { return std::strtod(std::string(i_Text).c_str(), nullptr); }

    XmlPlugin::XPathExpression* keep(std::unique_ptr<XmlPlugin::XPathExpression> i_pOperand)
    {
        m_Operands.push_back(std::move(i_pOperand));
        return m_Operands.back().get();
    }

    XmlPlugin::XPathExpression* computed(double i_Number, XmlPlugin::DataType i_Type)
    {
        XmlPlugin::XPathExpression* pOperand = keep(std::make_unique<XmlPlugin::XPathArgument>(i_Number));
        pOperand->SetDataType(i_Type);
        return pOperand;
    }

    XmlPlugin::XPathExpression* noValue()
    {
        return keep(std::make_unique<XmlPlugin::XPathExpression>(std::numeric_limits<double>::quiet_NaN()));
    }

    XmlPlugin::XPathExpression* text(std::string_view i_Text)
    {
        XmlPlugin::XPathExpression* pOperand =
            keep(std::make_unique<XmlPlugin::XPathArgument>(String(i_Text.data(), i_Text.size())));
        pOperand->SetDataType(XmlPlugin::StringType);
        return pOperand;
    }

    XmlPlugin::XPathExpression* nodes(std::string_view i_Values)
    {
        XmlPlugin::XPathExpression* pOperand = keep(std::make_unique<XmlPlugin::XPathArgument>(String(L"a/@b")));
        if (i_Values.empty())
        {
            return pOperand;
        }
        i_Values.remove_prefix(1);
        for (;;)
        {
            const std::size_t bar = i_Values.find('|');
            addRecord(*pOperand, i_Values.substr(0, bar));
            if (bar == std::string_view::npos)
            {
                return pOperand;
            }
            i_Values.remove_prefix(bar + 1);
        }
    }

    /// Null for what is no special number.
    XmlPlugin::XPathExpression* special(std::string_view i_Notation)
    {
        const std::size_t colon = i_Notation.find(':');
        const std::string_view kind = i_Notation.substr(0, colon);
        const double stored = colon == std::string_view::npos ? 0.0 : number(i_Notation.substr(colon + 1));
        const bool isNegativeZero = kind == "-0";
        int limit = XmlPlugin::NumbType;
        if (kind == "nan")
        {
            limit = XmlPlugin::NaNType;
        }
        else if (kind == "inf")
        {
            limit = XmlPlugin::PosInfType;
        }
        else if (kind == "-inf")
        {
            limit = XmlPlugin::NegInfType;
        }
        else if (kind == "zero")
        {
            limit = XmlPlugin::ZeroType;
        }
        else if (!isNegativeZero)
        {
            return nullptr;
        }
        XmlPlugin::XPathExpression* pOperand = computed(stored, XmlPlugin::NumberType);
        pOperand->setLimitType(limit);
        pOperand->setNegativeZero(isNegativeZero);
        return pOperand;
    }

    std::vector<std::unique_ptr<XmlPlugin::XPathExpression>> m_Operands;
    std::deque<XmlPlugin::XPathOutputElement> m_Records;
    std::deque<String> m_Texts;
};

/// A value as the test rows write it: its type and its text, `number 0 (-0)` for a flagged negative
/// zero, `number 0 (zero)` for the zero of a division by an infinity, `nothing` for no value.
inline std::string describe(const XmlPlugin::XPathExpression* i_pValue)
{
    if (!i_pValue)
    {
        return "nothing";
    }
    static const char* const s_Types[] = {"boolean ", "string ", "number ", "nodes "};
    const int type = i_pValue->GetDataType();
    std::string text = type < 0 ? std::string("untyped ") : std::string(s_Types[type]);
    text += i_pValue->GetExpressionString().toNarrow();
    if (i_pValue->isNegativeZero())
    {
        text += " (-0)";
    }
    if (i_pValue->getLimitType() == XmlPlugin::ZeroType)
    {
        text += " (zero)";
    }
    return text;
}

/// Where a call takes place.
struct CallPlace
{
    Node* m_pStartNode = nullptr;
    const XmlPlugin::XPathEvalContext* m_pContext = nullptr;
};

/// Evaluates an operator or function with arguments in reading order; the code of a failure, else
/// what `describe` says of the result.
inline std::string callWith(const std::string& i_Name, XmlPlugin::XPathExpressionsVector i_Arguments,
                            const CallPlace& i_Place = {})
{
    const std::unique_ptr<XmlPlugin::XPathExpression> pElement(
        XmlPlugin::XPathExpression::create(String(i_Name.c_str()), String(L"("), nullptr));
    if (!pElement->isOperator())
    {
        return "no operator";
    }
    auto& call = static_cast<XmlPlugin::XPathOperator&>(*pElement);
    if (call.isInfix() && !i_Arguments.empty())
    {
        call.setArgumentsCount(static_cast<int>(i_Arguments.size()));
    }
    call.setStartNode(i_Place.m_pStartNode);
    call.setEvalContext(i_Place.m_pContext);
    const TErrorCode code = call.evaluate(i_Arguments);
    return code != 0 ? std::to_string(code) : describe(call.getOutputArgument());
}

inline std::string call(const std::string& i_Name, const std::vector<std::string>& i_Arguments,
                        const CallPlace& i_Place = {})
{
    Values values;
    return callWith(i_Name, values.arguments(i_Arguments), i_Place);
}

/// One call and what it answers.
struct CallRow
{
    const char* name;
    std::vector<std::string> arguments; ///< in reading order
    const char* expected;
};

/// The row as it reads in an expression, for messages.
inline std::string print(const std::string& i_Name, const std::vector<std::string>& i_Arguments)
{
    std::string text = i_Name + "(";
    for (const std::string& argument : i_Arguments)
    {
        text += (text.back() == '(' ? "" : ", ") + argument;
    }
    return text + ")";
}

/// A small tree whose nodes hold names, parents and places in document order.
class Tree
{
public:
    explicit Tree(const char* i_RootName) : m_pRoot(std::make_unique<Node>(String(i_RootName), nullptr, 1u, 1u, 1u)) {}

    Node* root() const { return m_pRoot.get(); }
    Node* element(Node* i_pParent, const char* i_Name)
    {
        Node* pNode = new Node(String(i_Name), nullptr, 1, 1, ++m_Sequence);
        i_pParent->addChild(pNode);
        pNode->setParent(i_pParent);
        return pNode;
    }
    /// Text nodes have no parent pointer, as in trees that are built with them.
    void text(Node* i_pParent, const char* i_Text)
    {
        i_pParent->addChild(new TextNode(String(i_Text), 1, 1, ++m_Sequence));
    }

private:
    std::unique_ptr<Node> m_pRoot;
    unsigned m_Sequence = 1;
};
