#pragma once

#include <cstddef>
#include <string>

/// Documents to measure with: the same bytes on every machine, from a fixed seed.
///
/// Config     root/group/item, a few attributes an element, now and then a remark
/// Wide       all elements are children of the root
/// Deep       chains of elements, 500 levels each
/// TextHeavy  chapters of paragraphs, nearly all of it character data
/// Blocks     nests of 20 "a", in them 20 "b", in them 20 "c", one nest beside the other
/// Chain      one nest as deep as the document is long: a third "a", a third "b", a third "c"
enum class Shape
{
    Config,
    Wide,
    Deep,
    TextHeavy,
    Blocks,
    Chain
};

/// Where a document ends: with the first of the two that is reached; 0 is no limit.
struct DocumentSize
{
    std::size_t elements = 0;
    std::size_t bytes = 0;
};

/// What was made.
struct DocumentFacts
{
    std::size_t elements = 0;
    std::size_t bytes = 0;
};

/// The whole document in memory.
std::string makeDocument(Shape i_Shape, DocumentSize i_Size, DocumentFacts& o_Facts);
/// The same as a file. Throws std::runtime_error when it cannot be written.
DocumentFacts writeDocument(const std::string& i_Path, Shape i_Shape, DocumentSize i_Size);
