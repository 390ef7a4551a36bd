#pragma once

#include "base/String.h"
#include "xmlproxy/ExternalEntities.h"

#include <xercesc/util/XMLEntityResolver.hpp>

class XmlDocumentFile;
class XmlStreamList;

/// Finds external entities. Also makes sure that their streams are closed: the library forgets an open stream if memory
/// runs out.
///
/// A relative name starts at the folder of the file that contains it; in an archive, at the working directory. Only
/// regular files are opened, in the way of `XmlDocumentFile`, and none that is already being read. Nothing is ever
/// fetched from a network. Schemas are found in the same way.
///
/// Ownership: the caller owns each source. The document, the stream list and the memory are not owned; all of them must
/// outlive the sources and their streams, and so must the resolver.
/// Threads: one at a time; serves one parse.
/// Tested by: tests/common/xmlproxy/XmlEntityResolverTest.cpp, tests/common/xmlproxy/ExternalEntityTest.cpp,
/// tests/faults/MemoryFaultsTest.cpp
class XmlEntityResolver final : public xercesc::XMLEntityResolver
{
public:
    XmlEntityResolver(const XmlDocumentFile& i_Document, XmlStreamList& io_Streams, xercesc::MemoryManager& io_Memory,
                      ExternalEntities i_Allowed = ExternalEntities::Files) noexcept
        : m_Document(i_Document), m_Streams(io_Streams), m_Memory(io_Memory), m_Allowed(i_Allowed)
    {
    }
    XmlEntityResolver(const XmlEntityResolver&) = delete;
    XmlEntityResolver& operator=(const XmlEntityResolver&) = delete;

    /// Returns null for anything without a system identifier; the library then handles it itself. The source's
    /// `makeStream` returns null for a file that cannot be opened, and throws `XmlParseEnd` for one that must not be
    /// read.
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* i_pIdentifier) override;

    /// Why something must not be read, for a message; empty if nothing was rejected.
    const String& refusal() const noexcept { return m_Refusal; }
    /// The line that asked for it.
    int refusalLine() const noexcept { return m_RefusalLine; }

private:
    class Source;

    [[noreturn]] void refuse(const String& i_Name, const wchar_t* i_pReason, int i_Line);

    const XmlDocumentFile& m_Document;
    XmlStreamList& m_Streams;
    xercesc::MemoryManager& m_Memory;
    ExternalEntities m_Allowed;
    String m_Refusal;
    int m_RefusalLine = 0;
};
