#pragma once

#include "values/XPathExpression.h"

#include <memory>

namespace XmlPlugin
{

class XPathOperandPath;
struct XPathPlan;

/// Deletes what an operand keeps of its path. Only the folder `paths` knows the class.
struct XPathOperandPathDeleter
{
    void operator()(XPathOperandPath* i_pPath) const noexcept;
};

/// An operand: a literal, a number, a location path, or a computed result.
///
/// Ownership: see `XPathExpression`. Created by the tokenizer and by functions.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathArgumentTest.cpp
class XPathArgument final : public XPathExpression
{
public:
    /// The text decides the type: digits, with or without quotes, are a number; any other quoted text is a string;
    /// everything else is a location path.
    explicit XPathArgument(const String& i_Expression);
    /// Same, for a text that the caller keeps alive.
    explicit XPathArgument(Lent i_Expression);
    /// A number whose text and value are known.
    XPathArgument(Lent i_Digits, double i_Number) noexcept;
    /// A location path with its plan, which must outlive it.
    XPathArgument(Lent i_Path, const XPathPlan& i_Plan) noexcept;
    /// A computed text of type \p i_Type, whatever type its text suggests.
    XPathArgument(String&& i_Expression, DataType i_Type);
    /// A number. Its text is the number as a stream prints it with precision 6.
    explicit XPathArgument(double i_Expression);
    ~XPathArgument() override;

    /// For a location path: evaluates it from the start node and adds its records to the node set. An error leaves the
    /// node set empty. Another call, for another start node, does not empty the node set first.
    void EvaluateXPath() override;

    void calculateType(const String& i_Expression);
    /// See `XPathNumberText`.
    static bool isNumber(const String& i_Operand);
    /// Returns \p i_Expression with the path to \p i_pNode (its parent's name, its own name and position) in front.
    static String addPrefixToXPath(const String& i_Expression, long i_Position, const Node* i_pNode)
    {
        return addPrefixToXPath(viewOf(i_Expression), i_Position, i_pNode);
    }
    static String addPrefixToXPath(std::wstring_view i_Expression, long i_Position, const Node* i_pNode);
    static Node* getXMLRootNode(Node* i_pNode);

private:
    void classify();
    XPathOperandPath& path();
    bool evaluateByPlan(Node* i_pRoot);
    bool evaluateFromOwnPlace(Node* i_pRoot, XPathOutputList& o_Records);
    bool evaluateWithRecords(Node* i_pRoot, XPathOutputList& o_Records);

    const XPathPlan* m_pPlan = nullptr;                                 ///< for a plain path that quick code has read
    std::unique_ptr<XPathOperandPath, XPathOperandPathDeleter> m_pPath; ///< the path as evaluated from the nodes of a
                                                                        ///< predicate's list
};

} // namespace XmlPlugin
