#pragma once

#include <string>
#include <vector>

/// One fenced block of a Markdown text.
struct DocumentBlock
{
    int m_Line = 0;     ///< of the opening fence, counted from 1
    std::string m_Kind; ///< what stands behind the opening fence
    std::vector<std::string> m_Lines;
};

/// The fenced blocks of \p i_Text in their order. One that is not closed reaches to the end.
std::vector<DocumentBlock> readBlocks(const std::string& i_Text);

/// \p i_Text without its fenced blocks; the lines keep their numbers.
std::string withoutBlocks(const std::string& i_Text);

/// The lines of \p i_Text, without line feeds.
std::vector<std::string> linesOf(const std::string& i_Text);

/// The whole file at \p i_Path below the source folder; empty when it cannot be read.
std::string readSourceFile(const std::string& i_Path);

/// Paths below the source folder of all Markdown files that readers are led to: those of the root folder, of docs/ and
/// of examples/, sorted.
std::vector<std::string> documentNames();
