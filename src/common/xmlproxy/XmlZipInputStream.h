#pragma once

#include <xercesc/util/BinInputStream.hpp>

#include <cstdint>
#include <memory>

class InputStream;

/// The bytes of one archive member for the parser library.
///
/// Damaged data never looks like the end of the data: it throws one of the library's own input errors.
///
/// Ownership: owns the base library's stream.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlZipInputStreamTest.cpp
class XmlZipInputStream final : public xercesc::BinInputStream
{
public:
    /// Takes ownership of \p i_pInputStream, which must not be null.
    explicit XmlZipInputStream(InputStream* i_pInputStream);
    ~XmlZipInputStream() override;
    XmlZipInputStream(const XmlZipInputStream&) = delete;
    XmlZipInputStream& operator=(const XmlZipInputStream&) = delete;

    /// Number of bytes delivered so far.
    XMLFilePos curPos() const override;
    /// Reads at most \p i_MaxToRead bytes into \p o_Buffer and returns their number; 0 at the end of the data. Throws
    /// the library's `XMLPlatformUtilsException` if the data is damaged.
    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override;
    /// Always null.
    const XMLCh* getContentType() const override;

    /// The size of the data in bytes that the stream stated at construction.
    std::int32_t size() const noexcept { return m_Size; }

private:
    std::uint64_t m_Position = 0;
    std::int32_t m_Size = 0;
    std::unique_ptr<InputStream> m_pInputStream;
};
