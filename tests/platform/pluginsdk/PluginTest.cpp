#include "pluginsdk/Plugin.h"

#include "support/VirtualSlot.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

class OfferingPlugin final : public PluginSDK::Plugin
{
public:
    void reservedHook() override {}
    PluginSDK::Version& getVersion(PluginSDK::Version& o_Version) const override
    {
        o_Version = {1, 2, 3, 4};
        return o_Version;
    }
    const wchar_t* getName() const override { return L"Offering"; }
    int reservedQuery() const override { return 0; }
    void registerExpressions() override
    {
        addExpression(L"First");
        addExpression(nullptr);
        addExpression(L"Second");
    }
    void unload() override {}
    TErrorCode createExpression(const wchar_t*, PluginSDK::Expression**) override { return -1; }
    TErrorCode destroyExpression(PluginSDK::Expression*) override { return 0; }

    void offer(const std::wstring& i_Name) { addExpression(i_Name.c_str()); }
};

} // namespace

TEST(Plugin, OffersNothingBeforeItRegisters)
{
    const OfferingPlugin plugin;
    EXPECT_EQ(plugin.expressionCount(), 0U);
    EXPECT_EQ(plugin.expressionName(0), nullptr);
}

TEST(Plugin, OffersTypesInTheOrderOfRegistration)
{
    OfferingPlugin plugin;
    plugin.registerExpressions();
    ASSERT_EQ(plugin.expressionCount(), 2U);
    EXPECT_STREQ(plugin.expressionName(0), L"First");
    EXPECT_STREQ(plugin.expressionName(1), L"Second");
    EXPECT_EQ(plugin.expressionName(2), nullptr);
}

TEST(Plugin, NamesStayWhereTheyAre)
{
    OfferingPlugin plugin;
    plugin.offer(L"First");
    const wchar_t* const pName = plugin.expressionName(0);
    for (int i = 0; i < 1000; ++i)
    {
        plugin.offer(std::to_wstring(i));
    }
    EXPECT_EQ(plugin.expressionName(0), pName);
    EXPECT_STREQ(pName, L"First");
    EXPECT_STREQ(plugin.expressionName(1000), L"999");
}

TEST(Plugin, IsAsLargeAsTwoPointers)
{
    static_assert(sizeof(PluginSDK::Plugin) == 2 * sizeof(void*));
}

#if defined(TEST_VIRTUAL_SLOTS)
TEST(Plugin, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::reservedHook), 1U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::getVersion), 2U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::getName), 3U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::reservedQuery), 4U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::registerExpressions), 5U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::unload), 6U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::createExpression), 7U);
    EXPECT_EQ(slotOf(&PluginSDK::Plugin::destroyExpression), 8U);
}
#endif
