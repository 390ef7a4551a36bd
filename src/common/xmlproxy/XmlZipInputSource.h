#pragma once

#include "base/String.h"

#include <xercesc/sax/InputSource.hpp>

class XmlStreamList;

/// A document that is the first member of a ZIP archive, whatever the member's name.
///
/// Ownership: each stream that it makes is the caller's; the stream list is not owned and outlives
/// the streams.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlZipInputSourceTest.cpp
class XmlZipInputSource final : public xercesc::InputSource
{
public:
    /// The streams are guarded by \p i_pStreams; by null, not.
    explicit XmlZipInputSource(const String& i_Path, XmlStreamList* i_pStreams = nullptr);

    /// Null when the archive cannot be opened, has no members, or its first member has no stream.
    xercesc::BinInputStream* makeStream() const override;

private:
    String m_Path;
    XmlStreamList* m_pStreams;
};
