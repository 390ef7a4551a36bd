#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <cstdint>

class XmlDocumentFile;

/// The bytes of an open file for the parser library.
///
/// Ownership: the file is not owned and must outlive the stream.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlFileInputSourceTest.cpp
class XmlFileInputStream final : public xercesc::BinInputStream
{
public:
    explicit XmlFileInputStream(const XmlDocumentFile& i_File) noexcept : m_File(i_File) {}
    XmlFileInputStream(const XmlFileInputStream&) = delete;
    XmlFileInputStream& operator=(const XmlFileInputStream&) = delete;

    /// Number of bytes delivered so far.
    XMLFilePos curPos() const override { return m_Position; }
    /// Reads at most \p i_MaxToRead bytes and returns their number; 0 at the end of the file. Throws the library's
    /// `XMLPlatformUtilsException` if the file is not open or cannot be read.
    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override;
    /// Null.
    const XMLCh* getContentType() const override { return nullptr; }

private:
    const XmlDocumentFile& m_File;
    std::uint64_t m_Position = 0;
};
