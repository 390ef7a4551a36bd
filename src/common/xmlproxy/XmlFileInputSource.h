#pragma once

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>

class XmlDocumentFile;
class XmlStreamList;

/// A document in a plain file.
///
/// Its system identifier is the file's path. A relative path has `./` in front, so that nobody takes it for a URL, and
/// the working directory is not needed. If the file could not be opened, that is an error of reading it, like any
/// other.
///
/// Ownership: the caller owns each stream. The file and the stream list are not owned and must outlive the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlFileInputSourceTest.cpp
class XmlFileInputSource final : public xercesc::InputSource
{
public:
    /// \p i_pStreams guards the streams; if it is null, they are not guarded.
    explicit XmlFileInputSource(const XmlDocumentFile& i_File, XmlStreamList* i_pStreams = nullptr,
                                xercesc::MemoryManager* i_pMemory = xercesc::XMLPlatformUtils::fgMemoryManager);

    /// Never null. Each stream starts at the beginning of the file.
    xercesc::BinInputStream* makeStream() const override;

private:
    const XmlDocumentFile& m_File;
    XmlStreamList* m_pStreams;
};
