#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// What a query has answered, in a form that is short for long answers too.
struct ShapeAnswer
{
    std::int32_t code = 0;
    std::size_t count = 0;      ///< values
    std::size_t characters = 0; ///< in all values
    std::string last;           ///< the last value, when it has at most 20 characters

    friend bool operator==(const ShapeAnswer&, const ShapeAnswer&) = default;
};

std::ostream& operator<<(std::ostream& io_Out, const ShapeAnswer& i_Answer);

/// A document or an expression that is extreme in one direction, in any size.
struct Shape
{
    const char* name;
    const char* unit;      ///< what the size counts
    std::size_t size;      ///< the larger of the two sizes that are measured
    std::size_t quickSize; ///< for a test
    void (*document)(std::ostream& o_Out, std::size_t i_Size);
    std::string (*expression)(std::size_t i_Size);
    ShapeAnswer (*answer)(std::size_t i_Size); ///< what the expression must answer
};

const std::vector<Shape>& shapes();

struct ShapeTimes
{
    double first;  ///< seconds of processor time of the first query, which reads the document
    double second; ///< of another one like it
};

/// Asks the expression of the document at \p i_File twice, and forgets the document. Throws
/// std::runtime_error when an answer is not the right one.
ShapeTimes ask(const Shape& i_Shape, std::size_t i_Size, const std::string& i_File);
