#pragma once

#include "base/String.h"

#include <xercesc/framework/LocalFileInputSource.hpp>

class XmlStreamList;

/// A document that is a plain file.
///
/// The library's own source, apart from two things. A file name reaches the system as the base
/// library writes it, whatever the locale. And a file that cannot be opened any more when its turn
/// comes is an error of reading it, like every other that it may have.
///
/// Ownership: each stream that it makes is the caller's; the stream list is not owned and outlives
/// the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlFileInputSourceTest.cpp
class XmlFileInputSource final : public xercesc::LocalFileInputSource
{
public:
    /// \p i_pPath is \p i_Path as the library has it, null-terminated; it is copied. The streams
    /// are guarded by \p i_pStreams; by null, not.
    XmlFileInputSource(const String& i_Path, const XMLCh* i_pPath, XmlStreamList* i_pStreams = nullptr,
                       xercesc::MemoryManager* i_pMemory = xercesc::XMLPlatformUtils::fgMemoryManager);

    /// Never null.
    xercesc::BinInputStream* makeStream() const override;

private:
    String m_Path;
    XmlStreamList* m_pStreams;
};
