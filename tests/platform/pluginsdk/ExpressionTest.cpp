#include "pluginsdk/Expression.h"

#include "support/VirtualSlot.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace
{

class Operand final : public PluginSDK::ScalarOperand
{
public:
    explicit Operand(bool& o_Destroyed) : m_Destroyed(o_Destroyed) {}
    ~Operand() override { m_Destroyed = true; }

    bool reservedFlagA() const override { return false; }
    int getShape() const override { return 0; }
    bool reservedFlagB() const override { return true; }
    void reservedHook() override {}
    TErrorCode evaluate(PluginSDK::String& o_Result) override
    {
        o_Result = getProperty(L"file");
        return 0;
    }

private:
    bool& m_Destroyed;
};

class ExpressionProperties : public testing::Test
{
protected:
    bool m_Destroyed = false;
    Operand m_Operand{m_Destroyed};
};

} // namespace

TEST_F(ExpressionProperties, AreNullUntilSet)
{
    EXPECT_EQ(m_Operand.getProperty(L"file"), nullptr);
    m_Operand.setProperty(L"file", L"a.xml");
    EXPECT_STREQ(m_Operand.getProperty(L"file"), L"a.xml");
    EXPECT_EQ(m_Operand.getProperty(L"File"), nullptr);
    EXPECT_EQ(m_Operand.getProperty(L"fil"), nullptr);
}

TEST_F(ExpressionProperties, EmptyIsNotNull)
{
    m_Operand.setProperty(L"file", L"");
    EXPECT_STREQ(m_Operand.getProperty(L"file"), L"");
}

TEST_F(ExpressionProperties, AreReplacedAndRemoved)
{
    m_Operand.setProperty(L"file", L"a.xml");
    m_Operand.setProperty(L"xpath", L"//b");
    m_Operand.setProperty(L"file", L"c.xml");
    EXPECT_STREQ(m_Operand.getProperty(L"file"), L"c.xml");
    m_Operand.setProperty(L"file", nullptr);
    EXPECT_EQ(m_Operand.getProperty(L"file"), nullptr);
    EXPECT_STREQ(m_Operand.getProperty(L"xpath"), L"//b");
    m_Operand.setProperty(L"file", nullptr);
}

TEST_F(ExpressionProperties, NullNameIsNoProperty)
{
    m_Operand.setProperty(nullptr, L"a.xml");
    EXPECT_EQ(m_Operand.getProperty(nullptr), nullptr);
}

TEST_F(ExpressionProperties, TakePartOfThemselves)
{
    m_Operand.setProperty(L"file", L"folder/a-long-name-of-a-document.xml");
    m_Operand.setProperty(L"file", m_Operand.getProperty(L"file") + 7);
    EXPECT_STREQ(m_Operand.getProperty(L"file"), L"a-long-name-of-a-document.xml");
}

/// Texts that the object's own memory does not hold are kept, replaced and removed as others are.
TEST_F(ExpressionProperties, MayBeLong)
{
    const std::wstring first(200, L'a');
    const std::wstring second(300, L'b');
    m_Operand.setProperty(L"file", L"a.xml");
    m_Operand.setProperty(L"xpath", first.c_str());
    m_Operand.setProperty(L"file", second.c_str());
    EXPECT_EQ(m_Operand.getProperty(L"xpath"), first);
    EXPECT_EQ(m_Operand.getProperty(L"file"), second);
    m_Operand.setProperty(L"xpath", m_Operand.getProperty(L"xpath") + 10);
    EXPECT_EQ(m_Operand.getProperty(L"xpath"), first.substr(10));
    m_Operand.setProperty(L"xpath", nullptr);
    EXPECT_EQ(m_Operand.getProperty(L"xpath"), nullptr);
    EXPECT_EQ(m_Operand.getProperty(L"file"), second);
}

/// What is removed makes room for another one, also behind the first few.
TEST_F(ExpressionProperties, AreReplacedAndRemovedBesideOthers)
{
    for (int i = 0; i < 12; ++i)
    {
        m_Operand.setProperty((L"p" + std::to_wstring(i)).c_str(), L"a");
    }
    m_Operand.setProperty(L"p7", nullptr);
    m_Operand.setProperty(L"file", L"b.xml");
    m_Operand.setProperty(L"p11", L"c");
    EXPECT_EQ(m_Operand.getProperty(L"p7"), nullptr);
    EXPECT_STREQ(m_Operand.getProperty(L"p6"), L"a");
    EXPECT_STREQ(m_Operand.getProperty(L"p8"), L"a");
    EXPECT_STREQ(m_Operand.getProperty(L"p11"), L"c");
    EXPECT_STREQ(m_Operand.getProperty(L"file"), L"b.xml");
}

/// A value stays where it is while others are set and removed, however many there are.
TEST_F(ExpressionProperties, KeepTheirPlaceBesideOthers)
{
    m_Operand.setProperty(L"file", L"a.xml");
    const wchar_t* pFile = m_Operand.getProperty(L"file");
    for (int i = 0; i < 12; ++i)
    {
        m_Operand.setProperty((L"p" + std::to_wstring(i)).c_str(), std::to_wstring(i).c_str());
    }
    const wchar_t* pLast = m_Operand.getProperty(L"p11");
    for (int i = 0; i < 11; ++i)
    {
        EXPECT_STREQ(m_Operand.getProperty((L"p" + std::to_wstring(i)).c_str()), std::to_wstring(i).c_str());
        m_Operand.setProperty((L"p" + std::to_wstring(i)).c_str(), nullptr);
        EXPECT_EQ(m_Operand.getProperty((L"p" + std::to_wstring(i)).c_str()), nullptr);
    }
    m_Operand.setProperty(L"mustExist", L"true");
    EXPECT_EQ(m_Operand.getProperty(L"file"), pFile);
    EXPECT_EQ(m_Operand.getProperty(L"p11"), pLast);
    EXPECT_STREQ(pFile, L"a.xml");
    EXPECT_STREQ(pLast, L"11");
    EXPECT_STREQ(m_Operand.getProperty(L"mustExist"), L"true");
}

TEST(Expression, IsDestroyedThroughItsBase)
{
    bool destroyed = false;
    std::unique_ptr<PluginSDK::Expression> pExpression = std::make_unique<Operand>(destroyed);
    pExpression->setProperty(L"file", L"a.xml");
    PluginSDK::String result;
    ASSERT_EQ(static_cast<PluginSDK::ScalarExpression&>(*pExpression).evaluate(result), 0);
    EXPECT_STREQ(result.c_str(), L"a.xml");
    pExpression.reset();
    EXPECT_TRUE(destroyed);
}

/// Hosts and plug-ins that were built with different libraries agree on the object: its virtual table and one pointer.
TEST(Expression, IsAsLargeAsTwoPointers)
{
    static_assert(sizeof(PluginSDK::Expression) == 2 * sizeof(void*));
    static_assert(sizeof(PluginSDK::VectorOperand) == 2 * sizeof(void*));
}

#if defined(TEST_VIRTUAL_SLOTS)
TEST(Expression, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(slotOf(&PluginSDK::Expression::reservedFlagA), 1U);
    EXPECT_EQ(slotOf(&PluginSDK::Expression::getShape), 2U);
    EXPECT_EQ(slotOf(&PluginSDK::Expression::reservedFlagB), 3U);
    EXPECT_EQ(slotOf(&PluginSDK::Expression::reservedHook), 4U);
    EXPECT_EQ(slotOf(&PluginSDK::ScalarExpression::evaluate), 5U);
    EXPECT_EQ(slotOf(&PluginSDK::VectorExpression::evaluate), 5U);
}
#endif
