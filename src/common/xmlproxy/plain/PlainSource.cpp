#include "xmlproxy/plain/PlainSource.h"

#include "base/InputStream.h"
#include "base/ZipFile.h"
#include "xmlproxy/XmlText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace
{

template <class Source, class Argument>
std::unique_ptr<PlainSource> openAs(const Argument& i_Argument)
{
    auto pSource = std::make_unique<Source>(i_Argument);
    return pSource->isOpen() ? std::move(pSource) : nullptr;
}

} // namespace

std::unique_ptr<PlainSource> PlainSource::open(const XmlDocumentFile& i_File)
{
    return i_File.isArchive() ? openAs<PlainArchiveSource>(i_File.archiveName()) : openAs<PlainFileSource>(i_File);
}

std::size_t PlainFileSource::read(char* o_pBuffer, std::size_t i_Size)
{
    static_assert(s_Failed == XmlDocumentFile::s_Failed);
    const std::size_t count = m_File.readAt(m_Position, o_pBuffer, i_Size);
    m_Position += count == s_Failed ? 0 : count;
    return count;
}

PlainArchiveSource::PlainArchiveSource(const String& i_Path)
{
    ZipFile archive(i_Path);
    if (ZipEntry* pEntry = archive.getEntry(0))
    {
        m_pStream.reset(archive.getEntryStream(pEntry));
    }
}

PlainArchiveSource::~PlainArchiveSource()
{
    if (m_pStream)
    {
        m_pStream->close();
    }
}

std::size_t PlainArchiveSource::read(char* o_pBuffer, std::size_t i_Size)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    const std::int32_t count = m_pStream->read(o_pBuffer, static_cast<std::int32_t>(std::min(i_Size, most)));
    return count < 0 ? s_Failed : static_cast<std::size_t>(count);
}

std::size_t PlainBytesSource::read(char* o_pBuffer, std::size_t i_Size)
{
    const std::size_t count = std::min(i_Size, m_Rest.size());
    std::memcpy(o_pBuffer, m_Rest.data(), count);
    m_Rest.remove_prefix(count);
    return count;
}
