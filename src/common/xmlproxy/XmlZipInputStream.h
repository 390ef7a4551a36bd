#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <cstdint>
#include <memory>

class InputStream;

/// The bytes of one archive member for the parser library.
///
/// Damaged data never looks like the end of the data: it raises an input error of the library's own.
///
/// Ownership: owns the base library's stream.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlZipInputStreamTest.cpp
class XmlZipInputStream final : public xercesc::BinInputStream
{
public:
    /// Takes ownership of \p i_pInputStream, which is required.
    explicit XmlZipInputStream(InputStream* i_pInputStream);
    ~XmlZipInputStream() override;
    XmlZipInputStream(const XmlZipInputStream&) = delete;
    XmlZipInputStream& operator=(const XmlZipInputStream&) = delete;

    /// Number of bytes delivered.
    XMLFilePos curPos() const override;
    /// At most \p i_MaxToRead bytes; 0 at the end of the data. Throws the library's
    /// `XMLPlatformUtilsException` when the data is damaged.
    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override;
    /// Null.
    const XMLCh* getContentType() const override;

    /// The size that the stream stated at construction.
    std::int32_t size() const noexcept { return m_Size; }

private:
    std::uint64_t m_Position = 0;
    std::int32_t m_Size = 0;
    std::unique_ptr<InputStream> m_pInputStream;
};
