#include "compile/XPathPlainReader.h"

#include "compile/XPathCharacters.h"
#include "compile/XPathTerminals.h"
#include "values/XPathNumberText.h"
#include "values/XPathText.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

constexpr std::size_t s_Ascii = 0x80;

/// The characters of ASCII that names have.
constexpr std::array<bool, s_Ascii> s_NameUnits = []
{
    std::array<bool, s_Ascii> units{};
    for (const wchar_t unit : L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_."sv)
    {
        units[static_cast<std::size_t>(unit)] = true;
    }
    return units;
}();

bool isNameStart(wchar_t i_Unit) noexcept
{
    return isLetter(i_Unit) || i_Unit == L'_';
}

bool isNameUnit(wchar_t i_Unit) noexcept
{
    const auto unit = static_cast<std::size_t>(i_Unit);
    return unit < s_Ascii ? s_NameUnits[unit]
                          : isLetter(i_Unit) || isDigit(i_Unit) || isCombiningChar(i_Unit) || isExtender(i_Unit);
}

} // namespace

// --- Paths --------------------------------------------------------------------------------------

const XPathPlan* XPathPlainReader::readPath()
{
    XPathPlan* const pPlan = make<XPathPlan>();
    const wchar_t* pFrom = m_pNext;
    Separator front = takeSeparator();
    pPlan->m_IsAbsolute = front == Separator::Slash;
    for (XPathPlanBranch* pBranch = &pPlan->m_First;;)
    {
        if (!readBranch(*pBranch, front))
        {
            return nullptr;
        }
        pBranch->m_Text = {pFrom, static_cast<std::size_t>(m_pPathEnd - pFrom)};
        if (!take(L'|'))
        {
            return pPlan;
        }
        pPlan->m_HasSpaceBeforeBar = pPlan->m_HasSpaceBeforeBar || m_pNext != m_pPathEnd + 1;
        pFrom = m_pNext;
        front = takeSeparator();
        XPathPlanBranch* const pNext = make<XPathPlanBranch>();
        pBranch->m_pNext = pNext;
        pBranch = pNext;
    }
}

const XPathPlan* XPathPlainReader::readWhole(std::wstring_view i_Text, XPathMemory& io_Memory)
{
    const std::wstring_view text = trimmed(i_Text);
    XPathPlainReader reader(text, 0, io_Memory);
    const XPathPlan* const pPlan = reader.readPath();
    return pPlan && reader.end() == text.size() ? pPlan : nullptr;
}

bool XPathPlainReader::readBranch(XPathPlanBranch& io_Branch, Separator i_Front)
{
    Separator separator = i_Front;
    const XPathPlanStep** ppNext = &io_Branch.m_pSteps;
    do
    {
        if ((separator == Separator::None || io_Branch.m_pSteps) && takeAttributeMark())
        {
            const std::wstring_view name = takeName();
            io_Branch.m_Attribute = XmlNameView(name);
            io_Branch.m_TakesAttribute = true;
            m_pPathEnd = m_pNext;
            return !name.empty() && next() != L'[' && peek() != L'/';
        }
        XPathPlanStep* const pStep = readStep(separator);
        if (!pStep || ++io_Branch.m_StepCount > XPathPlanBranch::s_MostSteps)
        {
            return false;
        }
        *ppNext = pStep;
        ppNext = &pStep->m_pNext;
        separator = takeSeparator();
    } while (separator != Separator::None);
    return true;
}

XPathPlanStep* XPathPlainReader::readStep(Separator i_Front)
{
    const bool isAnyName = take(L'*');
    const std::wstring_view name = isAnyName ? L"*"sv : takeStepName();
    if (name.empty())
    {
        return nullptr;
    }
    XPathPlanStep* const pStep = make<XPathPlanStep>(name);
    pStep->m_IsAnyName = name == L"*"sv;
    pStep->m_IsDeep = i_Front == Separator::Slashes;
    m_pPathEnd = m_pNext;
    return readPredicates(*pStep) ? pStep : nullptr;
}

bool XPathPlainReader::readPredicates(XPathPlanStep& io_Step)
{
    const XPathPlanPredicate** ppNext = &io_Step.m_pPredicates;
    bool hasPlace = false;
    while (next() == L'[')
    {
        XPathPlanPredicate* const pPredicate = make<XPathPlanPredicate>();
        // Of several predicates that ask for places a walk knows only the first one's list without looking ahead.
        if (!readPredicate(*pPredicate) || (hasPlace && pPredicate->asksForPlace()))
        {
            return false;
        }
        hasPlace = hasPlace || pPredicate->asksForPlace();
        *ppNext = pPredicate;
        ppNext = &pPredicate->m_pNext;
        m_pPathEnd = m_pNext;
    }
    return true;
}

// --- Predicates ---------------------------------------------------------------------------------

XPathPlanPredicate XPathPlainReader::readPredicate(std::wstring_view i_Text)
{
    XPathPlanPredicate predicate;
    XPathPlainReader reader(i_Text);
    return reader.readPredicate(predicate) && reader.rest().empty() ? predicate : XPathPlanPredicate();
}

bool XPathPlainReader::readPredicate(XPathPlanPredicate& o_Predicate)
{
    if (!take(L'['))
    {
        return false;
    }
    const bool isRead = take(L'@') ? readAttribute(o_Predicate) : readPlace(o_Predicate);
    return isRead && take(L']');
}

bool XPathPlainReader::readPlace(XPathPlanPredicate& io_Predicate)
{
    if (isPlainDigit(next()))
    {
        io_Predicate.m_Kind = XPathPlanPredicate::Kind::Place;
        return readDigits(io_Predicate);
    }
    if (take(L"last()"sv))
    {
        io_Predicate.m_Kind = XPathPlanPredicate::Kind::Last;
        return true;
    }
    if (take(L"position()"sv))
    {
        io_Predicate.m_Kind = XPathPlanPredicate::Kind::Position;
        return take(L'=') && readDigits(io_Predicate);
    }
    return false;
}

bool XPathPlainReader::readDigits(XPathPlanPredicate& io_Predicate) noexcept
{
    constexpr int mostDigits = 9;
    if (next() == L'0')
    {
        return false;
    }
    int count = 0;
    std::uint32_t place = 0;
    for (; isPlainDigit(peek()) && count < mostDigits; ++count)
    {
        place = place * 10 + static_cast<std::uint32_t>(*m_pNext++ - L'0');
    }
    io_Predicate.m_Place = place;
    return count != 0; // what is left of more digits is not a "]"
}

bool XPathPlainReader::readAttribute(XPathPlanPredicate& io_Predicate)
{
    const std::wstring_view name = takeName();
    if (name.empty())
    {
        return false;
    }
    io_Predicate.m_Attribute = XmlNameView(name);
    io_Predicate.m_Kind = XPathPlanPredicate::Kind::HasAttribute;
    return next() == L']' || readComparison(io_Predicate);
}

bool XPathPlainReader::readComparison(XPathPlanPredicate& io_Predicate)
{
    static constexpr std::pair<std::wstring_view, XPathComparison> s_Comparisons[] = {
        {L"=", XPathComparison::Equal},        {L"!=", XPathComparison::NotEqual},
        {L"<=", XPathComparison::LessOrEqual}, {L">=", XPathComparison::GreaterOrEqual},
        {L"<", XPathComparison::Less},         {L">", XPathComparison::Greater}};
    const auto pFound = std::find_if(std::begin(s_Comparisons), std::end(s_Comparisons),
                                     [this](const auto& i_Row) { return take(i_Row.first); });
    if (pFound == std::end(s_Comparisons))
    {
        return false;
    }
    io_Predicate.m_Comparison = pFound->second;
    const wchar_t quote = next();
    const std::wstring_view operand = quote == L'\'' || quote == L'"' ? takeLiteral() : takeNumber();
    if (operand.empty())
    {
        return false;
    }
    const bool isNumber = XPathNumberText::readOperand(operand, io_Predicate.m_Number);
    io_Predicate.m_Kind = isNumber ? XPathPlanPredicate::Kind::Number : XPathPlanPredicate::Kind::Text;
    io_Predicate.m_Text = removeQuotes(operand);
    return true;
}

// --- Terminals ----------------------------------------------------------------------------------

XPathPlainReader::Separator XPathPlainReader::takeSeparator() noexcept
{
    if (!take(L'/'))
    {
        return Separator::None;
    }
    if (peek() != L'/')
    {
        return Separator::Slash;
    }
    ++m_pNext;
    return Separator::Slashes;
}

bool XPathPlainReader::takeAttributeMark() noexcept
{
    return take(L'@') || take(L"attribute::"sv);
}

std::wstring_view XPathPlainReader::takeStepName() noexcept
{
    next();
    const std::wstring_view axis = axisNameOf(rest());
    if (axis.empty())
    {
        return takeName();
    }
    const std::wstring_view behind = rest().substr(axis.size());
    if (axis == L"child"sv && behind.starts_with(L"::"sv))
    {
        m_pNext += axis.size() + 2;
        return take(L'*') ? L"*"sv : takeName();
    }
    // The grammar reads such a name as an axis and a name, together as long as this one.
    return !behind.empty() && isNameStart(behind.front()) ? takeName() : std::wstring_view();
}

std::wstring_view XPathPlainReader::takeName() noexcept
{
    if (!isNameStart(next()))
    {
        return {};
    }
    const wchar_t* const pName = m_pNext;
    const wchar_t* pEnd = pName;
    do
    {
        ++pEnd;
    } while (pEnd != m_pEnd && isNameUnit(*pEnd));
    m_pNext = pEnd;
    const wchar_t after = next();
    const bool isMore = after == L':' || after == L'(' || after == L'.' || after == L'-' || after == L'_';
    m_pNext = pEnd;
    return isMore ? std::wstring_view() : std::wstring_view(pName, static_cast<std::size_t>(pEnd - pName));
}

std::wstring_view XPathPlainReader::takeLiteral() noexcept
{
    const std::wstring_view text = rest();
    const std::size_t end = text.find_first_of(L"'\"[]/|"sv, 1);
    if (end == std::wstring_view::npos || text[end] != text.front())
    {
        return {};
    }
    m_pNext += end + 1;
    return text.substr(0, end + 1);
}

std::wstring_view XPathPlainReader::takeNumber() noexcept
{
    const wchar_t* const pNumber = m_pNext;
    const auto skipDigits = [this]
    {
        while (isPlainDigit(peek()))
        {
            ++m_pNext;
        }
    };
    skipDigits();
    if (m_pNext != pNumber && peek() == L'.')
    {
        ++m_pNext;
        if (!isPlainDigit(peek()))
        {
            return {};
        }
        skipDigits();
    }
    return {pNumber, static_cast<std::size_t>(m_pNext - pNumber)};
}

} // namespace XmlPlugin
