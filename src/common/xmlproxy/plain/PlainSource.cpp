#include "xmlproxy/plain/PlainSource.h"

#include "base/InputStream.h"
#include "base/ZipFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace
{

/// Null when the path does not name a regular file that can be opened.
std::FILE* openRegular(const String& i_Path)
{
    // The system's calls stop at a null character, so such a path would name another file.
    if (i_Path.indexOf(L'\0') >= 0)
    {
        return nullptr;
    }
#if defined(_WIN32)
    const std::filesystem::path path(i_Path.c_str());
#else
    const std::filesystem::path path(i_Path.toNarrow());
#endif
    std::error_code error;
    // Anything else, a pipe for instance, could not be read again from its beginning.
    if (!std::filesystem::is_regular_file(path, error))
    {
        return nullptr;
    }
#if defined(_WIN32)
    return _wfopen(path.c_str(), L"rb");
#elif defined(__linux__)
    return std::fopen(path.c_str(), "rbe");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

template <class Source>
std::unique_ptr<PlainSource> openAs(const String& i_Path)
{
    auto pSource = std::make_unique<Source>(i_Path);
    return pSource->isOpen() ? std::move(pSource) : nullptr;
}

} // namespace

std::unique_ptr<PlainSource> PlainSource::open(const String& i_Path)
{
    return ZipFile::isValid(i_Path) == 0 ? openAs<PlainArchiveSource>(i_Path) : openAs<PlainFileSource>(i_Path);
}

PlainFileSource::PlainFileSource(const String& i_Path) : m_pFile(openRegular(i_Path))
{
    if (m_pFile)
    {
        // The reader has a buffer of its own.
        std::setvbuf(m_pFile, nullptr, _IONBF, 0);
    }
}

PlainFileSource::~PlainFileSource()
{
    if (m_pFile)
    {
        std::fclose(m_pFile);
    }
}

std::size_t PlainFileSource::read(char* o_pBuffer, std::size_t i_Size)
{
    const std::size_t count = std::fread(o_pBuffer, 1, i_Size, m_pFile);
    return count == 0 && std::ferror(m_pFile) != 0 ? s_Failed : count;
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
