#pragma once

#include "base/String.h"

#include <xercesc/framework/LocalFileInputSource.hpp>

class XmlStreamList;

/// A document in a plain file.
///
/// Like the library's own source, with two differences. The base library opens the file, so its name does not depend on
/// the locale. If the file can no longer be opened, that is an error of reading it, like any other.
///
/// Ownership: the caller owns each stream. The stream list is not owned and must outlive the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlFileInputSourceTest.cpp
class XmlFileInputSource final : public xercesc::LocalFileInputSource
{
public:
    /// \p i_pPath is \p i_Path in the library's own units, null-terminated; it is copied. \p i_pStreams guards the
    /// streams; if it is null, they are not guarded.
    XmlFileInputSource(const String& i_Path, const XMLCh* i_pPath, XmlStreamList* i_pStreams = nullptr,
                       xercesc::MemoryManager* i_pMemory = xercesc::XMLPlatformUtils::fgMemoryManager);

    /// Never null.
    xercesc::BinInputStream* makeStream() const override;

private:
    String m_Path;
    XmlStreamList* m_pStreams;
};
