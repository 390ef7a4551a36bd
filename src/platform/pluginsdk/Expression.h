#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace PluginSDK
{

/// What a host evaluates. Made and destroyed by the plug-in that offers its type.
///
/// The order of the virtual operations and the size of the object are part of the binary contract with plug-ins.
/// Ownership: keeps copies of its properties, in its own memory as long as that lasts.
/// Threads: one at a time.
/// Tested by: tests/platform/pluginsdk/ExpressionTest.cpp
class PLUGINSDK_API Expression
{
public:
    Expression();
    virtual ~Expression(); // slot 0
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    virtual bool reservedFlagA() const = 0; // slot 1: for the host's own use
    virtual int getShape() const = 0;       // slot 2: 0 one string, 1 a list
    virtual bool reservedFlagB() const = 0; // slot 3: for the host's own use
    virtual void reservedHook() = 0;        // slot 4: for the host's own use

    /// Sets a property; null removes it.
    void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);
    /// The property's value, valid until the property is set again; null when it is not set.
    const wchar_t* getProperty(const wchar_t* i_Name) const;

private:
    static constexpr std::size_t s_UsualProperties = 4;
    static constexpr std::size_t s_UsualLength = 160; // of all names and values together

    /// A name and its value, each with a null behind it, in one piece of memory.
    struct Property
    {
        const wchar_t* m_pName = nullptr; ///< null: not set
        const wchar_t* m_pValue = nullptr;
        std::unique_ptr<wchar_t[]> m_pHeap; ///< null: in the memory of the usual ones
    };

    struct IsNamed;

    Property* find(const wchar_t* i_Name) noexcept;
    Property* findFurther(const wchar_t* i_Name) noexcept;
    Property& vacant();
    Property& vacantFurther();
    wchar_t* reserve(Property& o_Property, std::size_t i_Size);
    void fill(Property& o_Property, std::wstring_view i_Name, std::wstring_view i_Value);
    void replace(Property& io_Property, const wchar_t* i_Value);

    // Expressions have a handful of properties, which are set once: they are looked through one after the other.
    Property m_Usual[s_UsualProperties];
    std::size_t m_UsualCount = 0; ///< of m_Usual, in use so far
    std::vector<Property> m_Further;
    std::size_t m_Used = 0; ///< of m_Texts; what a removed property leaves is not used again
    wchar_t m_Texts[s_UsualLength];
};

/// An expression that yields one string.
class PLUGINSDK_API ScalarExpression : public Expression
{
public:
    ~ScalarExpression() override;
    /// 0 with the value in \p o_Result, or a negative code with \p o_Result empty.
    virtual TErrorCode evaluate(String& o_Result) = 0; // slot 5
};

/// An expression that yields a list of strings.
class PLUGINSDK_API VectorExpression : public Expression
{
public:
    ~VectorExpression() override;
    /// 0 with the values in \p o_Result, or a negative code with \p o_Result empty.
    virtual TErrorCode evaluate(StringVector& o_Result) = 0; // slot 5
};

/// A scalar expression without operands of its own.
class PLUGINSDK_API ScalarOperand : public ScalarExpression
{
public:
    ~ScalarOperand() override;
};

/// A vector expression without operands of its own.
class PLUGINSDK_API VectorOperand : public VectorExpression
{
public:
    ~VectorOperand() override;
};

} // namespace PluginSDK
