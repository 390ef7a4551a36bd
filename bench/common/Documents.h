#pragma once

#include <cstddef>
#include <string>

/// Documents for the measurements: the same bytes on every machine, from a fixed seed.
///
/// Config     root/group/item, a few attributes per element, now and then an element "remark"
/// Wide       all elements are children of the root
/// Deep       chains of elements, 500 levels each
/// TextHeavy  chapters of paragraphs, almost all of it character data
/// Blocks     nests of 20 "a", in them 20 "b", in them 20 "c", one nest after another
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

/// The size at which a document ends, at whichever limit is reached first; 0 means no limit.
struct DocumentSize
{
    std::size_t elements = 0;
    std::size_t bytes = 0;
};

/// The actual size of a document.
struct DocumentFacts
{
    std::size_t elements = 0;
    std::size_t bytes = 0;
};

/// Creates a document in memory.
std::string makeDocument(Shape i_Shape, DocumentSize i_Size, DocumentFacts& o_Facts);
/// Same, as a file. Throws std::runtime_error if it cannot be written.
DocumentFacts writeDocument(const std::string& i_Path, Shape i_Shape, DocumentSize i_Size);
