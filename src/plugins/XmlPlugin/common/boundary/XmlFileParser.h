#pragma once

#include "base/String.h"

#include <cstdint>

class NodeSink;

namespace XmlPlugin
{

/// Parses one file into one tree, on construction.
///
/// Ownership: keeps only its status; the sink receives the tree.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlFileParserTest.cpp
class XmlFileParser
{
public:
    /// If the file does not exist, it is not parsed and the sink is not called. Otherwise the sink receives the
    /// messages of the parser, and the root if the document is read to its end.
    XmlFileParser(const String& i_File, NodeSink& io_Sink);
    virtual ~XmlFileParser();
    XmlFileParser(const XmlFileParser&) = delete;
    XmlFileParser& operator=(const XmlFileParser&) = delete;

    /// 0: no error was counted; 1: the file does not exist; otherwise the number of errors.
    std::int32_t status() const noexcept { return m_Status; }

private:
    std::int32_t m_Status = 0;
};

} // namespace XmlPlugin
