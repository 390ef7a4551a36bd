#pragma once

#include "values/XPathMemory.h"
#include "values/XPathPlan.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

namespace XmlPlugin
{

/// Reads plain location paths in one pass, from the text to the plan that a walk follows. Nearly all paths are plain.
///
/// This is the only definition of a plain path. As everywhere in the language, spaces may precede anything except the
/// inner characters of a name:
///
///     Path       ::= Branch ("|" Branch)*
///     Branch     ::= ("//" | "/")? Step (("//" | "/") Step)* (("//" | "/") Attribute)? | Attribute
///     Step       ::= "child::"? (Name | "*") Predicate*
///     Attribute  ::= ("@" | "attribute::") Name
///     Predicate  ::= "[" (Place | "@" Name (Comparison (Literal | Number))?) "]"
///     Place      ::= Digits | "position()" "=" Digits | "last()"
///     Comparison ::= "=" | "!=" | "<" | "<=" | ">" | ">="
///     Literal    ::= a quoted text that contains no quotes, brackets, "/" or "|"
///     Number     ::= [0-9]+ ("." [0-9]+)?
///     Digits     ::= [1-9] [0-9]*, at most nine digits
///     Name       ::= NCName
///
/// A step has at most one predicate that asks for a position, and a branch has at most `XPathPlanBranch::s_MostSteps`
/// steps. The name of a step must not be one that the grammar reads as an axis without a node test (D-18). A name must
/// not continue after spaces (D-02), and neither a colon nor a parenthesis may follow it. If another step or predicate
/// follows a path, the path is not plain.
///
/// The tokenizer and the steps read a plain path in the same way, because it contains none of the characters that mean
/// one thing to the grammar and another when a path is split (D-47).
///
/// Ownership: the plan is in the memory and refers to the text; the caller keeps both alive.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathPlainReaderTest.cpp
class XPathPlainReader
{
public:
    /// Starts reading at offset \p i_Begin, which must not be beyond the end.
    XPathPlainReader(std::wstring_view i_Text, std::size_t i_Begin, XPathMemory& io_Memory) noexcept
        : m_pBegin(i_Text.data()), m_pNext(m_pBegin + i_Begin), m_pEnd(m_pBegin + i_Text.size()), m_pMemory(&io_Memory)
    {
    }

    /// Returns the longest plain path at this place; null if there is none, or if it is part of something that is not
    /// plain.
    const XPathPlan* readPath();
    /// The offset where that path ends; meaningless if there is none.
    std::size_t end() const noexcept { return static_cast<std::size_t>(m_pPathEnd - m_pBegin); }

    /// Returns the plan of a text that consists of one plain path, with or without blanks around it; null for any other
    /// text.
    static const XPathPlan* readWhole(std::wstring_view i_Text, XPathMemory& io_Memory);
    /// Reads a predicate, including its brackets. The result has the kind `None` if the predicate is not plain; it
    /// refers to the text.
    static XPathPlanPredicate readPredicate(std::wstring_view i_Text);

private:
    explicit XPathPlainReader(std::wstring_view i_Text) noexcept
        : m_pBegin(i_Text.data()), m_pNext(m_pBegin), m_pEnd(m_pBegin + i_Text.size())
    {
    }

    enum class Separator : std::uint8_t
    {
        None,
        Slash,
        Slashes
    };

    bool readBranch(XPathPlanBranch& io_Branch, Separator i_Front);
    XPathPlanStep* readStep(Separator i_Front);
    bool readPredicates(XPathPlanStep& io_Step);
    bool readPredicate(XPathPlanPredicate& o_Predicate);
    bool readAttribute(XPathPlanPredicate& io_Predicate);
    bool readComparison(XPathPlanPredicate& io_Predicate);
    bool readPlace(XPathPlanPredicate& io_Predicate);
    bool readDigits(XPathPlanPredicate& io_Predicate) noexcept;

    // Each returns an empty text, or None, if nothing of the kind is here.
    Separator takeSeparator() noexcept;
    bool takeAttributeMark() noexcept;
    std::wstring_view takeStepName() noexcept;
    std::wstring_view takeName() noexcept;
    std::wstring_view takeLiteral() noexcept;
    std::wstring_view takeNumber() noexcept;

    wchar_t peek() const noexcept { return m_pNext != m_pEnd ? *m_pNext : L'\0'; }
    /// Skips spaces and returns the character after them.
    wchar_t next() noexcept
    {
        while (m_pNext != m_pEnd && *m_pNext == L' ')
        {
            ++m_pNext;
        }
        return peek();
    }
    /// Skips spaces, and then \p i_Symbol if it follows them.
    bool take(wchar_t i_Symbol) noexcept
    {
        const bool isThere = next() == i_Symbol;
        m_pNext += isThere ? 1 : 0;
        return isThere;
    }
    bool take(std::wstring_view i_Symbol) noexcept
    {
        const bool isThere = next() == i_Symbol.front() && rest().starts_with(i_Symbol);
        m_pNext += isThere ? i_Symbol.size() : 0;
        return isThere;
    }
    std::wstring_view rest() const noexcept { return {m_pNext, static_cast<std::size_t>(m_pEnd - m_pNext)}; }
    template <class Type, class... Values>
    Type* make(Values... i_Values)
    {
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): a reader without memory makes nothing
        return new (m_pMemory->allocate(sizeof(Type))) Type(i_Values...);
    }

    const wchar_t* const m_pBegin;
    const wchar_t* m_pNext;
    const wchar_t* const m_pEnd;
    const wchar_t* m_pPathEnd = nullptr;
    XPathMemory* const m_pMemory = nullptr; ///< null: no plan is made
};

} // namespace XmlPlugin
