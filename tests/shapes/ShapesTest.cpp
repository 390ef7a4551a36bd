#include "Shapes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

// The extreme shapes in moderate sizes: the answers are right. How time and memory grow is shown by
// the program "shapes".

void PrintTo(const Shape& i_Shape, std::ostream* io_pStream)
{
    *io_pStream << i_Shape.name;
}

namespace
{

class Shapes : public testing::TestWithParam<Shape>
{
};

TEST_P(Shapes, AreAnswered)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("document.xml");
    const Shape& shape = GetParam();
    for (const std::size_t size : {shape.quickSize, shape.quickSize + 1})
    {
        {
            std::ofstream stream(file, std::ios::binary | std::ios::trunc);
            shape.document(stream, size);
        }
        EXPECT_NO_THROW(ask(shape, size, file));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Shapes, testing::ValuesIn(shapes()),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
