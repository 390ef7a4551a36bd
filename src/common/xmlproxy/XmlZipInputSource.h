#pragma once

#include "base/String.h"

#include <xercesc/sax/InputSource.hpp>

class XmlStreamList;

/// A document in the first member of a ZIP archive, whatever that member's name.
///
/// Ownership: the caller owns each stream. The stream list is not owned and must outlive the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlZipInputSourceTest.cpp
class XmlZipInputSource final : public xercesc::InputSource
{
public:
    /// \p i_pStreams guards the streams; if it is null, they are not guarded.
    explicit XmlZipInputSource(const String& i_Path, XmlStreamList* i_pStreams = nullptr);

    /// Null if the archive cannot be opened, if it has no members, or if its first member has no stream.
    xercesc::BinInputStream* makeStream() const override;

private:
    String m_Path;
    XmlStreamList* m_pStreams;
};
