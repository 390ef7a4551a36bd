#pragma once

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>

class XmlDocumentFile;
class XmlStreamList;

/// A document that is a plain file.
///
/// Its system identifier is the file's path, with `./` before a relative one, so that nobody takes it
/// for a URL: the working directory is not asked for. A file that could not be opened is an error of
/// reading it, like every other that it may have.
///
/// Ownership: each stream that it makes is the caller's; the file and the stream list are not owned
/// and outlive the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlFileInputSourceTest.cpp
class XmlFileInputSource final : public xercesc::InputSource
{
public:
    /// The streams are guarded by \p i_pStreams; by null, not.
    explicit XmlFileInputSource(const XmlDocumentFile& i_File, XmlStreamList* i_pStreams = nullptr,
                                xercesc::MemoryManager* i_pMemory = xercesc::XMLPlatformUtils::fgMemoryManager);

    /// Never null. Each stream starts at the beginning of the file.
    xercesc::BinInputStream* makeStream() const override;

private:
    const XmlDocumentFile& m_File;
    XmlStreamList* m_pStreams;
};
