#include "DocumentBlocks.h"

#include "support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

// The code of docs/host-guide.md, put together to one program by ExtractCode.cmake, does what the guide says.

namespace
{

std::string join(const DocumentBlock& i_Block)
{
    std::string text;
    for (const std::string& line : i_Block.m_Lines)
    {
        text += line + "\n";
    }
    return text;
}

std::vector<DocumentBlock> blocksOf(const std::string& i_Kind)
{
    std::vector<DocumentBlock> blocks;
    for (const DocumentBlock& block : readBlocks(readSourceFile("docs/host-guide.md")))
    {
        if (block.m_Kind == i_Kind)
        {
            blocks.push_back(block);
        }
    }
    return blocks;
}

} // namespace

TEST(Guide, ProgramPrintsWhatTheGuideSays)
{
    const ProcessResult result = runProcess({GUIDE_PROGRAM, PLUGIN_MODULE, SOURCE_FOLDER "/examples/servers.xml"});
    ASSERT_EQ(1U, blocksOf("text").size());
    EXPECT_EQ(join(blocksOf("text").front()), result.out);
    EXPECT_EQ("", result.err);
    EXPECT_EQ(0, result.status);
}

TEST(Guide, ProgramSaysWhenThereIsNoPlugin)
{
    const ProcessResult result =
        runProcess({GUIDE_PROGRAM, SOURCE_FOLDER "/Makefile", SOURCE_FOLDER "/examples/servers.xml"});
    EXPECT_EQ(2, result.status);
    EXPECT_NE("", result.err);
}

TEST(Guide, BuildFileIsThatOfTheExample)
{
    const std::string example = readSourceFile("examples/host/CMakeLists.txt");
    for (const DocumentBlock& block : blocksOf("cmake"))
    {
        EXPECT_THAT(example, testing::HasSubstr(join(block))) << "docs/host-guide.md:" << block.m_Line;
    }
    EXPECT_EQ(1U, blocksOf("cmake").size());
}
