#pragma once

#include "values/XPathExpression.h"

#include <memory>

namespace XmlPlugin
{

class XPathOperandPath;
struct XPathPlan;

/// Deletes what an operand keeps of its path, whose class is known to the room of the paths only.
struct XPathOperandPathDeleter
{
    void operator()(XPathOperandPath* i_pPath) const noexcept;
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

    void calculateType(const String& i_Expression);
    /// See `XPathNumberText`.
    static bool isNumber(const String& i_Operand);
    /// Puts the path to \p i_pNode (its parent's name, its own name and position) before \p i_Expression.
    static String addPrefixToXPath(const String& i_Expression, long i_Position, const Node* i_pNode)
    {
        return addPrefixToXPath(i_Expression.view(), i_Position, i_pNode);
    }
    static String addPrefixToXPath(std::wstring_view i_Expression, long i_Position, const Node* i_pNode);
    static Node* getXMLRootNode(Node* i_pNode);

private:
    void classify();
    XPathOperandPath& path();
    bool evaluateByPlan(Node* i_pRoot);
    bool evaluateFromOwnPlace(Node* i_pRoot, XPathOutputList& o_Records);
    bool evaluateWithRecords(Node* i_pRoot, XPathOutputList& o_Records);

    const XPathPlan* m_pPlan = nullptr;                                 ///< of a plain path that quick code has read
    std::unique_ptr<XPathOperandPath, XPathOperandPathDeleter> m_pPath; ///< the path as evaluated from the nodes of a
                                                                        ///< predicate's list
};

} // namespace XmlPlugin
