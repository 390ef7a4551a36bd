#pragma once

#include <xercesc/util/XMLEntityResolver.hpp>

class XmlStreamList;

/// Finds external entities by the parser library's own default rules. Also makes sure that their streams are closed:
/// the library forgets an open stream if memory runs out.
///
/// Ownership: the caller owns each source. Neither the stream list nor the memory is owned; both must outlive the
/// sources and their streams.
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

    /// Returns null for anything but an entity; the library then handles it itself.
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* i_pIdentifier) override;

private:
    XmlStreamList& m_Streams;
    xercesc::MemoryManager& m_Memory;
};
