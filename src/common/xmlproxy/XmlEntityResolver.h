#pragma once

#include <xercesc/util/XMLEntityResolver.hpp>

class XmlStreamList;

/// Finds external entities by the parser library's own default rules, and sees to the end of the
/// streams that they are read from: the library forgets an open one when memory runs out.
///
/// Ownership: each source is the caller's; neither the stream list nor the memory is owned, and
/// both outlive the sources and their streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlEntityResolverTest.cpp, tests/faults/MemoryFaultsTest.cpp
class XmlEntityResolver final : public xercesc::XMLEntityResolver
{
public:
    XmlEntityResolver(XmlStreamList& io_Streams, xercesc::MemoryManager& io_Memory) noexcept
        : m_Streams(io_Streams), m_Memory(io_Memory)
    {
    }
    XmlEntityResolver(const XmlEntityResolver&) = delete;
    XmlEntityResolver& operator=(const XmlEntityResolver&) = delete;

    /// Null for what is no entity, which is left to the library.
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* i_pIdentifier) override;

private:
    XmlStreamList& m_Streams;
    xercesc::MemoryManager& m_Memory;
};
