#include "DocumentExamples.h"

#include "xmlproxy/XmlErrorCodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace
{

struct Code
{
    TErrorCode value;
    const char* name;
    const char* text;
};

#define XML_ERROR_ENTRY(value, name, text) {value, #name, text},
constexpr Code s_Codes[] = {XML_ERROR_CODES(XML_ERROR_ENTRY)};
#undef XML_ERROR_ENTRY

const DocumentExamples& errors()
{
    static const DocumentExamples s_Errors = DocumentExamples::ofFile("errors.md");
    return s_Errors;
}

std::string headingOf(const Code& i_Code)
{
    return std::to_string(i_Code.value) + " " + i_Code.name;
}

/// The text between the heading of a code and the next heading.
std::string chapterOf(const Code& i_Code)
{
    const std::string& text = errors().text();
    const std::size_t begin = text.find("\n### " + headingOf(i_Code) + "\n");
    if (begin == std::string::npos)
    {
        return {};
    }
    return text.substr(begin, text.find("\n#", begin + 2) - begin);
}

} // namespace

TEST(Errors, IsWellFormed)
{
    EXPECT_THAT(errors().problems(), IsEmpty());
}

TEST(Errors, EveryExampleAnswersAsWritten)
{
    for (const DocumentExample& example : errors().examples())
    {
        EXPECT_EQ(example.m_Answer, errors().run(example))
            << "docs/errors.md:" << example.m_Line << ": " << example.m_Expression;
    }
}

TEST(Errors, EveryCodeHasAChapterWithItsMeaning)
{
    for (const Code& code : s_Codes)
    {
        std::string chapter = chapterOf(code);
        EXPECT_NE("", chapter) << headingOf(code);
        std::replace(chapter.begin(), chapter.end(), '\n', ' ');
        EXPECT_THAT(chapter, HasSubstr(std::string("*") + code.text + "*"));
    }
}

TEST(Errors, NoChapterIsForAnUnknownCode)
{
    std::vector<std::string> known;
    for (const Code& code : s_Codes)
    {
        known.push_back(headingOf(code));
    }
    for (const std::string& heading : errors().headings())
    {
        if (heading.starts_with("-"))
        {
            EXPECT_THAT(known, ::testing::Contains(heading));
        }
    }
}

TEST(Errors, EveryCodeIsRaisedOrSaidToBeOutOfReach)
{
    for (const Code& code : s_Codes)
    {
        const std::string answer = "error " + std::to_string(code.value) + "\n";
        bool isRaised = false;
        for (const DocumentExample& example : errors().examples())
        {
            isRaised = isRaised || (example.m_Heading == headingOf(code) && example.m_Answer == answer);
        }
        const bool isOutOfReach = chapterOf(code).find("Out of reach of input:") != std::string::npos;
        EXPECT_NE(isRaised, isOutOfReach) << headingOf(code) << ": exactly one of the two";
    }
}
