#pragma once

#include "xpathlanguage/XPathWord.h"

#include <string_view>

namespace XPathLanguage
{

/// What the axis name of a step means. The description of the dialect lists the codes.
enum AxisCode : unsigned
{
    AttributeAxis = 0,
    ChildAxis = 1,
    DescendantAxis = 2,
    SelfAxis = 3,
    DescendantOrSelfAxis = 4,
    FollowingAxis = 5,
    PrecedingAxis = 6,
    AncestorAxis = 7,
    AncestorOrSelfAxis = 8,
    FollowingSiblingAxis = 9,
    PrecedingSiblingAxis = 10,
    ParentAxis = 11
};

struct Axis
{
    Word name;
    AxisCode code;
};

/// Every axis, in the order in which the tokenizer looks for them. It takes the first name that the text begins with,
/// whatever follows.
/// D-17: so a name hides longer ones after it that begin with it: "descendant-or-self::x" and "following-sibling::x"
/// are not recognised. XPath 1.0 accepts them.
/// D-34: "namespace" is read as "child". XPath 1.0 has an axis with this name.
/// Tested by: tests/common/xpathlanguage/XPathTablesTest.cpp
inline constexpr Axis s_Axes[] = {
    {"ancestor-or-self", AncestorOrSelfAxis},
    {"ancestor", AncestorAxis},
    {"attribute", AttributeAxis},
    {"child", ChildAxis},
    {"descendant", DescendantAxis},
    {"descendant-or-self", DescendantOrSelfAxis},
    {"following", FollowingAxis},
    {"following-sibling", FollowingSiblingAxis},
    {"namespace", ChildAxis},
    {"parent", ParentAxis},
    {"preceding-sibling", PrecedingSiblingAxis},
    {"preceding", PrecedingAxis},
    {"self", SelfAxis},
};

/// Returns the code of a name, narrow or wide.
/// D-34: an axis with an unknown name is read as "child". In XPath 1.0 it is an error.
template <class Character>
constexpr AxisCode axisCode(std::basic_string_view<Character> i_Name) noexcept
{
    for (const Axis& axis : s_Axes)
    {
        if (axis.name == i_Name)
        {
            return axis.code;
        }
    }
    return ChildAxis;
}

/// The name of an axis code; "" for any other number.
constexpr std::string_view axisName(unsigned i_Code) noexcept
{
    for (const Axis& axis : s_Axes)
    {
        if (axis.code == i_Code)
        {
            return axis.name.text();
        }
    }
    return {};
}

/// The name of the axis that hides the one with this name from the tokenizer; "" if none does.
constexpr std::string_view hidingAxis(std::string_view i_Name) noexcept
{
    for (const Axis& axis : s_Axes)
    {
        const std::string_view name = axis.name.text();
        if (i_Name.starts_with(name))
        {
            return name.size() < i_Name.size() ? name : std::string_view();
        }
    }
    return {};
}

} // namespace XPathLanguage
