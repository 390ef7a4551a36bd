#pragma once

#include "values/XPathMemory.h"
#include "values/XPathPlan.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>

namespace XmlPlugin
{

/// Reads plain location paths, which nearly all are: in one pass from the text to the plan that a walk follows.
///
/// This is the one definition of what is plain. Spaces may stand before everything but a name's inner characters, as
/// everywhere in the language:
///
///     Path       ::= Branch ("|" Branch)*
///     Branch     ::= ("//" | "/")? Step (("//" | "/") Step)* (("//" | "/") Attribute)? | Attribute
///     Step       ::= "child::"? (Name | "*") Predicate*
///     Attribute  ::= ("@" | "attribute::") Name
///     Predicate  ::= "[" (Place | "@" Name (Comparison (Literal | Number))?) "]"
///     Place      ::= Digits | "position()" "=" Digits | "last()"
///     Comparison ::= "=" | "!=" | "<" | "<=" | ">" | ">="
///     Literal    ::= a quoted text without quotes, brackets, "/" and "|" in it
///     Number     ::= [0-9]+ ("." [0-9]+)?
///     Digits     ::= [1-9] [0-9]*, nine digits at most
///     Name       ::= NCName
///
/// No step has two predicates that ask for a place, and no branch more than `XPathPlanBranch::s_MostSteps` steps. A
/// step's name is none that the grammar reads as an axis and then nothing (D-18). No name goes on after spaces (D-02),
/// with a colon or with a parenthesis. A path that a further step or predicate follows is not plain.
///
/// What is plain, tokenizer and steps read alike: the characters that mean one thing to the grammar and another to the
/// splitting of a path (D-47) are not in it.
///
/// Ownership: the plan is in the memory and looks at the text.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathPlainReaderTest.cpp
class XPathPlainReader
{
public:
    /// Reads from offset \p i_Begin on, which is not beyond the end.
    XPathPlainReader(std::wstring_view i_Text, std::size_t i_Begin, XPathMemory& io_Memory) noexcept
        : m_pBegin(i_Text.data()), m_pNext(m_pBegin + i_Begin), m_pEnd(m_pBegin + i_Text.size()), m_pMemory(&io_Memory)
    {
    }

    /// The longest plain path here; null when there is none or it is part of something that is not plain.
    const XPathPlan* readPath();
    /// Where that path ends; meaningless without one.
    std::size_t end() const noexcept { return static_cast<std::size_t>(m_pPathEnd - m_pBegin); }

    /// The plan of a text that is one plain path and nothing else, with blanks around it; null for every other one.
    static const XPathPlan* readWhole(std::wstring_view i_Text, XPathMemory& io_Memory);
    /// A predicate, with its brackets; of kind `None` when it is not plain. It looks at the text.
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

    // What is taken is empty, or None, where nothing of the kind stands here.
    Separator takeSeparator() noexcept;
    bool takeAttributeMark() noexcept;
    std::wstring_view takeStepName() noexcept;
    std::wstring_view takeName() noexcept;
    std::wstring_view takeLiteral() noexcept;
    std::wstring_view takeNumber() noexcept;

    wchar_t peek() const noexcept { return m_pNext != m_pEnd ? *m_pNext : L'\0'; }
    /// The character after the spaces that stand here, which it skips.
    wchar_t next() noexcept
    {
        while (m_pNext != m_pEnd && *m_pNext == L' ')
        {
            ++m_pNext;
        }
        return peek();
    }
    /// Skips spaces and then \p i_Symbol, if it stands there.
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
    XPathMemory* const m_pMemory = nullptr; ///< null: nothing is made
};

} // namespace XmlPlugin
