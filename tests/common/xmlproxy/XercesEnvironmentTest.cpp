#include "xmlproxy/XercesEnvironment.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/NodeReader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{

void setVariable(const char* i_pValue)
{
#ifdef _WIN32
    _putenv_s("XERCES_DISABLE_DTD", i_pValue);
#else
    setenv("XERCES_DISABLE_DTD", i_pValue, 1);
#endif
}

std::string variable()
{
    const char* pValue = std::getenv("XERCES_DISABLE_DTD");
    return pValue ? pValue : "none";
}

class XercesEnvironmentTest : public testing::Test
{
protected:
    ~XercesEnvironmentTest() override
    {
#ifdef _WIN32
        _putenv_s("XERCES_DISABLE_DTD", "");
#else
        unsetenv("XERCES_DISABLE_DTD");
#endif
    }
};

TEST_F(XercesEnvironmentTest, IsAsItWasAfterwards)
{
    EXPECT_EQ("none", variable());
    {
        const XercesEnvironment environment;
        EXPECT_EQ("none", variable());
    }
    for (const char* pValue : {"1", "2"})
    {
        setVariable(pValue);
        {
            const XercesEnvironment environment;
            EXPECT_NE("1", variable());
        }
        EXPECT_EQ(pValue, variable());
    }
}

TEST_F(XercesEnvironmentTest, ChangesNothingOfADocument)
{
    const TestFolder folder;
    const String file = folder.write("a.xml", "<!DOCTYPE a [<!ENTITY e 'v'>]><a x='&e;'/>");
    setVariable("1");
    RecordingSink sink;
    NodeReader reader(&sink);
    reader.read(file, 0);
    EXPECT_EQ(0, reader.errorCount());
    EXPECT_EQ("a#1{x=v#0}", sink.trees());
    EXPECT_EQ("1", variable());
}

} // namespace
