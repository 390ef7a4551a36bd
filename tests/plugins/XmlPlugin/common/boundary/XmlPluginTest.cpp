#include "boundary/XmlPlugin.h"

#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using PluginSDK::Expression;

TEST(XmlPluginObject, NameAndVersion)
{
    const PluginSDK::XmlPlugin plugin;
    EXPECT_STREQ(plugin.getName(), L"Xml");
    PluginSDK::Version version{7, 7, 7, 7};
    EXPECT_EQ(&plugin.getVersion(version), &version);
    EXPECT_EQ(version.major, 1u);
    EXPECT_EQ(version.minor, 1u);
    EXPECT_EQ(version.patch, 1u);
    EXPECT_EQ(version.build, 1u);
    EXPECT_EQ(plugin.reservedQuery(), 0);
}

TEST(XmlPluginObject, RegistersTwoTypes)
{
    PluginSDK::XmlPlugin plugin;
    EXPECT_EQ(plugin.expressionCount(), 0u);
    plugin.reservedHook();
    plugin.registerExpressions();
    ASSERT_EQ(plugin.expressionCount(), 2u);
    EXPECT_STREQ(plugin.expressionName(0), L"XmlValue");
    EXPECT_STREQ(plugin.expressionName(1), L"XmlValues");
    EXPECT_EQ(plugin.expressionName(2), nullptr);
}

TEST(XmlPluginObject, MakesBothTypes)
{
    PluginSDK::XmlPlugin plugin;
    Expression* pExpression = nullptr;
    ASSERT_EQ(plugin.createExpression(L"XmlValue", &pExpression), 0);
    EXPECT_NE(dynamic_cast<PluginSDK::ScalarExpression*>(pExpression), nullptr);
    EXPECT_EQ(pExpression->getShape(), 0);
    EXPECT_EQ(plugin.destroyExpression(pExpression), 0);

    ASSERT_EQ(plugin.createExpression(L"XmlValues", &pExpression), 0);
    EXPECT_NE(dynamic_cast<PluginSDK::VectorExpression*>(pExpression), nullptr);
    EXPECT_EQ(pExpression->getShape(), 1);
    EXPECT_EQ(plugin.destroyExpression(pExpression), 0);
    EXPECT_EQ(plugin.destroyExpression(nullptr), 0);
}

TEST(XmlPluginObject, RefusesOtherTypeNames)
{
    PluginSDK::XmlPlugin plugin;
    ::XmlPlugin::XmlValue before;
    for (const wchar_t* pName : {L"", L" ", L"xmlvalue", L"XMLVALUE", L"XmlVALUE", L"XmlValueS", L"xmlValues",
                                 L"XmlValue ", L" XmlValue", L"XmlValues ", L"XmlValuess", L"XmlValuex", L"XmlValu"})
    {
        Expression* pExpression = &before;
        EXPECT_EQ(plugin.createExpression(pName, &pExpression), -10008) << String(pName).toNarrow();
        EXPECT_EQ(pExpression, nullptr) << String(pName).toNarrow();
    }
}

TEST(XmlPluginObject, RefusesNullArguments)
{
    PluginSDK::XmlPlugin plugin;
    ::XmlPlugin::XmlValue before;
    Expression* pExpression = &before;
    EXPECT_EQ(plugin.createExpression(nullptr, &pExpression), -101);
    EXPECT_EQ(pExpression, &before);
    EXPECT_EQ(plugin.createExpression(L"XmlValue", nullptr), -101);
    EXPECT_EQ(plugin.createExpression(L"unknown", nullptr), -101);
    EXPECT_EQ(plugin.createExpression(nullptr, nullptr), -101);
}

TEST(XmlPluginObject, AnExpressionOutlivesUnload)
{
    PluginSDK::XmlPlugin plugin;
    const TemporaryFolder folder;
    Expression* pExpression = nullptr;
    ASSERT_EQ(plugin.createExpression(L"XmlValue", &pExpression), 0);
    auto* pScalar = dynamic_cast<PluginSDK::ScalarExpression*>(pExpression);
    ASSERT_NE(pScalar, nullptr);
    pScalar->setProperty(L"file", String(folder.write("d.xml", "<r x='old'/>").c_str()).c_str());
    pScalar->setProperty(L"xpath", L"r/@x");

    PluginSDK::String value;
    EXPECT_EQ(pScalar->evaluate(value), 0);
    EXPECT_STREQ(value.c_str(), L"old");
    folder.write("d.xml", "<r x='new'/>");
    EXPECT_EQ(pScalar->evaluate(value), 0);
    EXPECT_STREQ(value.c_str(), L"old") << "the document is kept";

    plugin.unload();
    plugin.unload();
    EXPECT_EQ(pScalar->evaluate(value), 0);
    EXPECT_STREQ(value.c_str(), L"new");
    EXPECT_EQ(plugin.destroyExpression(pExpression), 0);
    plugin.unload();
}

TEST(XmlPluginObject, ItsEndWithoutUnloadLeavesTheDocuments)
{
    const TemporaryFolder folder;
    const String file(folder.write("d.xml", "<r x='old'/>").c_str());
    for (int life = 0; life < 2; ++life)
    {
        PluginSDK::XmlPlugin plugin;
        ::XmlPlugin::XmlValue expression;
        expression.setProperty(L"file", file.c_str());
        expression.setProperty(L"xpath", L"r/@x");
        PluginSDK::String value;
        EXPECT_EQ(expression.evaluate(value), 0);
        EXPECT_STREQ(value.c_str(), L"old");
        folder.write("d.xml", "<r x='new'/>");
    }
    PluginSDK::XmlPlugin().unload();
}

TEST(XmlPluginObject, UnloadWithoutADocumentIsHarmless)
{
    PluginSDK::XmlPlugin plugin;
    plugin.unload();
    plugin.unload();
    EXPECT_EQ(plugin.createExpression(L"unknown", nullptr), -101);
}

} // namespace
