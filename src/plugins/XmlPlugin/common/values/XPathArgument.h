#pragma once

#include "values/XPathExpression.h"

#include <memory>

namespace XmlPlugin
{

class XPath;
struct XPathPlan;

/// Deletes the path of an operand, whose class is known to the room of the paths only.
struct XPathDeleter
{
    void operator()(XPath* i_pPath) const noexcept;
};

/// An operand: a literal, a number, a location path, or a computed result.
///
/// Ownership: see `XPathExpression`. Made by the tokenizer and by functions.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathArgumentTest.cpp
class XPathArgument final : public XPathExpression
{
public:
    /// Takes its type from the text: quoted or bare digits are a number, other quoted text is a
    /// string, everything else is a location path.
    explicit XPathArgument(const String& i_Expression);
    /// The same of a text that is lent to it.
    explicit XPathArgument(Lent i_Expression);
    /// A number of which text and value are known.
    XPathArgument(Lent i_Digits, double i_Number) noexcept;
    /// A location path with its plan, which outlives it.
    XPathArgument(Lent i_Path, const XPathPlan& i_Plan) noexcept;
    /// A computed text of type \p i_Type, which is not the one that its text has.
    XPathArgument(String&& i_Expression, DataType i_Type);
    /// A number; its text is the number as a stream prints it with precision 6.
    explicit XPathArgument(double i_Expression);
    ~XPathArgument() override;

    /// For a location path: evaluates it from the start node and adds its records to the node
    /// set. Errors leave the node set empty. Called again for another start node, it does not
    /// empty the node set first.
    void EvaluateXPath() override;

    void calculateType(const String& i_Expression) { calculateType(i_Expression.view()); }
    /// Digits with at most one full stop, after an optional minus sign; behind the sign spaces
    /// may stand anywhere. Asks the C runtime's `iswdigit`.
    static bool isNumber(const String& i_Operand) { return isNumber(i_Operand.view()); }
    static bool isNumber(std::wstring_view i_Operand);
    /// The type that an operand of this text has.
    static DataType typeOf(std::wstring_view i_Text);
    /// True when an operand of this text is a number; \p o_Number is set only then.
    static bool readOperand(std::wstring_view i_Text, double& o_Number);
    /// Puts the path to \p i_pNode (its parent's name, its own name and position) before \p i_Expression.
    static String addPrefixToXPath(const String& i_Expression, long i_Position, const Node* i_pNode)
    {
        return addPrefixToXPath(i_Expression.view(), i_Position, i_pNode);
    }
    static String addPrefixToXPath(std::wstring_view i_Expression, long i_Position, const Node* i_pNode);
    static Node* getXMLRootNode(Node* i_pNode);

    /// A number as every result prints it: precision 6, independent of the locale; "nan", "inf", "-inf".
    static String printNumber(double i_Value);
    /// The number that \p i_Text (already trimmed, without quotes) begins with; 0 when it begins
    /// with none; the largest double when it is too large.
    static double readNumber(const String& i_Text) { return readNumber(i_Text.view()); }
    static double readNumber(std::wstring_view i_Text);
    /// The number that an operand of type `NumberType` with this text is.
    static double numberOf(std::wstring_view i_Text);

private:
    void classify();
    void calculateType(std::wstring_view i_Expression);
    bool evaluateByPlan(Node* i_pRoot);
    bool evaluateFromOwnPlace(Node* i_pRoot, XPathOutputList& o_Records);
    bool evaluateWithRecords(Node* i_pRoot, XPathOutputList& o_Records) const;

    const XPathPlan* m_pPlan = nullptr;                   ///< of a plain path that quick code has read
    std::unique_ptr<XPath, XPathDeleter> m_pRelativePath; ///< the path as evaluated from a node of a predicate's list
};

} // namespace XmlPlugin
