#pragma once

#include "values/XPathArgument.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace XmlPlugin
{

class XPathFunction;

/// A number, with what its double cannot express.
struct XPathNumber
{
    double m_Value = 0.0;
    LimitType m_Limit = NumbType;
    bool m_NegativeZero = false;

    /// A special number; its stored number is 0.
    static constexpr XPathNumber special(LimitType i_Limit) noexcept { return {0.0, i_Limit, false}; }
    /// The number that \p i_Expression stores, whatever its type.
    static XPathNumber of(const XPathExpression& i_Expression);
    bool isSpecial() const noexcept { return m_Limit != NumbType; }
};

/// What the engine uses from a row of the table of functions. xpathlanguage/XPathFunctionTable.h explains the columns.
struct XPathFunctionRow
{
    std::wstring_view name; ///< followed by a null
    /// Creates the function in \p i_pPlace, which must have room for one (see `XPathFunction::s_Size`), or on the heap
    /// if it is null.
    XPathFunction* (*make)(void* i_pPlace, const XPathFunctionRow&);
    int initialCount;
    int maximum;
    int minimum;
    int priority;
    DataType resultType;
    std::span<const DataType> parameterTypes;
};

/// Same, for the table of operators, xpathlanguage/XPathOperatorTable.h.
struct XPathOperatorRow
{
    std::wstring_view token;
    XPathFunction* (*make)(void* i_pPlace, const XPathOperatorRow&); ///< as above
    int priority;
};

/// What a token calls for: a row of one of the two tables, or nothing.
struct XPathFunctionChoice
{
    const XPathOperatorRow* m_pOperator = nullptr;
    const XPathFunctionRow* m_pNamed = nullptr;

    explicit operator bool() const noexcept { return m_pOperator || m_pNamed; }
    std::wstring_view token() const noexcept { return m_pOperator ? m_pOperator->token : m_pNamed->name; }
    int priority() const noexcept { return m_pOperator ? m_pOperator->priority : m_pNamed->priority; }
    bool isInfix() const noexcept { return !m_pOperator; }
    int initialCount() const noexcept;
    XPathFunction* make(void* i_pPlace) const
    {
        return m_pOperator ? m_pOperator->make(i_pPlace, *m_pOperator) : m_pNamed->make(i_pPlace, *m_pNamed);
    }
};

/// Maps a token to a new function object.
class XPathFunctionFactory
{
public:
    /// Returns the function of an operator token, otherwise a named function; null if the token is neither. The caller
    /// owns the result. \p i_pPrevElement, which is not null for a parenthesis that follows an element, decides whether
    /// the parenthesis opens a function call.
    static XPathFunction* selectOperator(const String& i_Token, const String& i_NextToken,
                                         const XPathExpression* i_pPrevElement);
    /// Same, without creating the function; nothing if the token is neither.
    static XPathFunctionChoice choose(std::wstring_view i_Token, std::wstring_view i_NextToken) noexcept;
    /// Returns a named function; null unless \p i_NextToken is "(" and the name is known. The caller owns the result.
    static XPathFunction* create(const String& i_Name, const String& i_NextToken);
    /// All named functions.
    static std::span<const XPathFunctionRow> functions() noexcept;
    /// The row with this name; null for an unknown name.
    static const XPathFunctionRow* find(std::wstring_view i_Name) noexcept;
};

/// Base of every operator and named function. Has what the parser needs to place it, what the operator needs to prepare
/// its arguments, the arguments, and the result.
///
/// Ownership: owned by one `XPathOperator`. Owns its output expression and the converted
/// parameters; other parameters belong to the parser.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/functions/XPathFunctionTest.cpp
class XPathFunction : public XPathFunctionFactory
{
public:
    static constexpr int s_InitialCount = 2;
    static constexpr int s_UsualPriority = 4;
    /// The size of any function, in bytes.
    static const std::size_t s_Size;

    /// \p i_Name must outlive the function.
    explicit XPathFunction(std::wstring_view i_Name = {});
    /// For an operator. The row must outlive the function too.
    explicit XPathFunction(const XPathOperatorRow& i_Row);
    virtual ~XPathFunction(); // slot 0
    XPathFunction(const XPathFunction&) = delete;
    XPathFunction& operator=(const XPathFunction&) = delete;

    /// Maximum number of arguments; -1 for no limit.
    virtual int getArgumentsCount() const; // slot 1
    /// Minimum number of arguments.
    virtual int getMinArgumentsCount() const; // slot 2
    /// Computes the result from the parameters, the start node and the evaluation context. Returns 0, with or without a
    /// result; -102 if not implemented; -15005 if a parameter is missing.
    virtual TErrorCode evaluate() = 0; // slot 3

    void setArgumentsCount(int i_Count) noexcept { m_ArgumentsCount = i_Count; }
    /// The number of arguments of this call, whatever the limits.
    int argumentsOfCall() const { return recordedCount(m_ArgumentsCount); }
    /// Writes the trace record of a request for a count, and returns the count.
    static int recordedCount(int i_Count);
    DataType getResultType() const noexcept { return m_ResultType; }
    int getPriority() const noexcept { return m_Priority; }
    bool isInfix() const noexcept { return m_IsInfix; }
    std::span<const DataType> getParameterTypes() const noexcept { return m_ParameterTypes; }
    /// The token of an operator; empty for a named function.
    String name() const { return String(m_Name.data(), m_Name.size()); }
    /// \p i_pParameter must not be null.
    void addParameter(XPathExpression* i_pParameter) { m_Parameters.push_back(i_pParameter); }
    /// Same, and the function takes ownership of the parameter.
    void addConvertedParameter(std::unique_ptr<XPathExpression> i_pParameter);
    void setStartNode(Node* i_pNode) noexcept { m_pStartNode = i_pNode; }
    void setEvalContext(const XPathEvalContext* i_pContext) noexcept { m_EvalContext = i_pContext; }
    /// The result; null if there is none. Owned by the function.
    XPathExpression* getOutputExpression() noexcept { return m_Output ? &*m_Output : nullptr; }
    /// Drops parameters and result, so that the call can be evaluated again.
    void reset() noexcept;

protected:
    void createOutputExpression(String&& i_Expression);
    void createOutputExpression(std::wstring_view i_Expression);
    void createOutputExpression(double i_Expression, LimitType i_LimitType = NumbType, bool i_NegativeZero = false);
    void createOutputExpression(const XPathNumber& i_Number);
    /// 1 or 0.
    void createBoolean(bool i_Value) { createOutputExpression(i_Value ? 1.0 : 0.0); }

    /// Returns 0 if there are at least \p i_Count parameters, otherwise -15005.
    TErrorCode requireParameters(std::size_t i_Count) const noexcept;
    /// Parameter \p i_Index, which must exist. The last argument has index 0.
    const XPathExpression& parameter(std::size_t i_Index) const noexcept { return *m_Parameters[i_Index]; }
    /// Its text, without quotes.
    std::wstring_view parameterText(std::size_t i_Index) const { return parameter(i_Index).stringView(); }

    Node* m_pStartNode = nullptr;
    int m_ArgumentsCount = s_InitialCount;
    bool m_IsInfix = true;
    int m_Priority = s_UsualPriority;
    const XPathEvalContext* m_EvalContext = nullptr;
    DataType m_ResultType = NoType;
    std::span<const DataType> m_ParameterTypes;
    XPathExpressionsVector m_Parameters; ///< last argument first
    std::wstring_view m_Name;

private:
    friend class XPathFunctionFactory; // recognises a parenthesis that opens a call
    void finishOutput();

    std::optional<XPathArgument> m_Output; ///< inside the function: a call has only one result

    std::vector<std::unique_ptr<XPathExpression>> m_ConvertedParameters;
};

/// Base of the named functions. Their limits, priority and types are those of their row.
///
/// Tested by: tests/plugins/XmlPlugin/common/functions/XPathFunctionTest.cpp
class XPathNamedFunction : public XPathFunction
{
public:
    explicit XPathNamedFunction(const XPathFunctionRow& i_Row);

    int getArgumentsCount() const final;
    int getMinArgumentsCount() const final;

private:
    int limit(int i_Limit) const noexcept;

    const XPathFunctionRow& m_Row; ///< in the table, which exists as long as the program
};

inline constexpr std::size_t XPathFunction::s_Size = sizeof(XPathFunction) + sizeof(void*);

} // namespace XmlPlugin
