#pragma once

#include <cstdint>
#include <limits>

namespace XmlPlugin
{

/// How many nodes one evaluation may visit. All code that walks the tree spends one visit per node that it looks at. An
/// evaluation that has spent its budget ends with -15004 instead of running for hours.
///
/// Outside a scope, visits are counted but never end anything, so that tests can measure them.
///
/// Threads: each has its own count.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathCostTest.cpp
class XPathBudget
{
public:
    static constexpr std::uint64_t s_Usual = 1'000'000'000;
    static constexpr std::uint64_t s_Unlimited = std::numeric_limits<std::uint64_t>::max();

    /// The budget of one evaluation, for the lifetime of this object.
    XPathBudget() noexcept : m_OuterSpent(s_Spent), m_OuterLimit(s_Limit)
    {
        s_Spent = 0;
        s_Limit = s_UsualOfTests != 0 ? s_UsualOfTests : s_Usual;
    }
    ~XPathBudget()
    {
        s_Spent += m_OuterSpent;
        s_Limit = m_OuterLimit;
    }
    XPathBudget(const XPathBudget&) = delete;
    XPathBudget& operator=(const XPathBudget&) = delete;

    static void spend(std::uint64_t i_Visits = 1) noexcept { s_Spent += i_Visits; }
    static std::uint64_t spent() noexcept { return s_Spent; }
    static std::uint64_t limit() noexcept { return s_Limit; }
    /// Once true, stays true until the end of the scope.
    static bool isSpent() noexcept { return s_Spent > s_Limit; }

    /// For tests: the number of visits that later scopes allow; 0 for the usual number.
    static void setUsual(std::uint64_t i_Visits) noexcept { s_UsualOfTests = i_Visits; }

private:
    static inline constinit thread_local std::uint64_t s_Spent = 0;
    static inline constinit thread_local std::uint64_t s_Limit = s_Unlimited;
    static inline std::uint64_t s_UsualOfTests = 0;

    const std::uint64_t m_OuterSpent;
    const std::uint64_t m_OuterLimit;
};

} // namespace XmlPlugin
