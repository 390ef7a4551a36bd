#include "values/XPathQuickCode.h"

#include "RecordedTrace.h"

#include <gtest/gtest.h>

using namespace XmlPlugin;

namespace
{

TEST(XPathQuickCode, IsForbiddenToThoseWhoWantAllRecords)
{
    EXPECT_TRUE(XPathQuickCode::isAllowed());
    for (const auto& [level, isAllowed] :
         {std::pair{TraceOff, true}, {TraceError, true}, {TraceWarning, true}, {TraceInformation, false}})
    {
        const RecordedTrace trace(level);
        EXPECT_EQ(XPathQuickCode::isAllowed(), isAllowed) << level;
    }
    EXPECT_TRUE(XPathQuickCode::isAllowed());
}

TEST(XPathQuickCode, IsForbiddenWithinAScope)
{
    {
        const XPathQuickCode::Forbidden outer;
        EXPECT_FALSE(XPathQuickCode::isAllowed());
        {
            const XPathQuickCode::Forbidden inner;
            EXPECT_FALSE(XPathQuickCode::isAllowed());
        }
        EXPECT_FALSE(XPathQuickCode::isAllowed()) << "the outer scope still holds";
    }
    EXPECT_TRUE(XPathQuickCode::isAllowed());
}

} // namespace
