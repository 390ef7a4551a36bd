// Archives as libzip reads them; the only file that is linked with it.

#include "base/InputStream.h"
#include "base/zip/ZipArchive.h"

#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace
{

using SharedArchive = std::shared_ptr<zip_t>;

#if !defined(_WIN32)
struct FileCloser
{
    void operator()(std::FILE* i_pFile) const noexcept { std::fclose(i_pFile); }
};
#endif

struct ZipMemberCloser
{
    void operator()(zip_file_t* i_pFile) const noexcept { zip_fclose(i_pFile); }
};

/// Whether an operation on an archive failed for want of memory.
bool isMemoryError(const zip_error_t& i_Error) noexcept
{
    constexpr int zlibMemory = -4;
    switch (zip_error_code_zip(&i_Error))
    {
    case ZIP_ER_MEMORY:
        return true;
    case ZIP_ER_OPEN:
    case ZIP_ER_READ:
        return zip_error_code_system(&i_Error) == ENOMEM;
    case ZIP_ER_ZLIB:
        return zip_error_code_system(&i_Error) == zlibMemory;
    default:
        return false;
    }
}

/// On Linux the file is opened here: the library forgets one that it has opened itself when memory
/// runs out at once.
zip_source_t* openSource(const String& i_Path, zip_error_t* o_pError)
{
#if defined(_WIN32)
    return zip_source_win32w_create(i_Path.c_str(), 0, 0, o_pError);
#else
    std::unique_ptr<std::FILE, FileCloser> pFile(std::fopen(i_Path.toNarrow().c_str(), "rbe"));
    if (pFile == nullptr && errno == ENOMEM)
    {
        throw std::bad_alloc();
    }
    zip_source_t* pSource = pFile ? zip_source_filep_create(pFile.get(), 0, -1, o_pError) : nullptr;
    if (pSource != nullptr)
    {
        static_cast<void>(pFile.release()); // the source has it
    }
    return pSource;
#endif
}

zip_t* openArchiveHandle(const String& i_Path)
{
    zip_error_t error;
    zip_error_init(&error);
    errno = 0;
    zip_source_t* pSource = openSource(i_Path, &error);
    zip_t* pArchive = pSource == nullptr ? nullptr : zip_open_from_source(pSource, ZIP_RDONLY, &error);
    if (pArchive == nullptr && pSource != nullptr)
    {
        zip_source_free(pSource);
    }
    // Where the library has lost what was wrong, the system's error number may tell.
    const bool isMemory = pArchive == nullptr && (isMemoryError(error) || errno == ENOMEM);
    zip_error_fini(&error);
    return isMemory ? throw std::bad_alloc() : pArchive;
}

/// The unpacked data of one archive member; keeps the archive open as long as it needs it.
class ZipEntryStream final : public InputStream
{
public:
    /// Takes \p i_pFile over. \p i_StatedSize is negative when the archive does not tell.
    ZipEntryStream(SharedArchive i_pArchive, zip_file_t* i_pFile, std::int64_t i_StatedSize)
        : m_pArchive(std::move(i_pArchive)), m_pFile(i_pFile), m_StatedSize(i_StatedSize)
    {
    }

    std::int32_t read(void* o_Buffer, std::int32_t i_Count) override
    {
        if (m_pFile == nullptr || i_Count < 0 || (i_Count > 0 && o_Buffer == nullptr))
        {
            return -1;
        }
        if (i_Count == 0)
        {
            return 0;
        }
        const std::int64_t count = zip_fread(m_pFile.get(), o_Buffer, static_cast<zip_uint64_t>(i_Count));
        if (count < 0 && isMemoryError(*zip_file_get_error(m_pFile.get())))
        {
            throw std::bad_alloc();
        }
        if (count < 0 || count > i_Count || endsAtWrongSize(count))
        {
            close();
            return -1;
        }
        m_Position += count;
        return static_cast<std::int32_t>(count);
    }

    std::int32_t size() const override
    {
        constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(m_StatedSize, 0, largest));
    }

    void close() override
    {
        m_pFile.reset();
        m_pArchive.reset();
    }

private:
    bool endsAtWrongSize(std::int64_t i_Count) const
    {
        return i_Count == 0 && m_StatedSize >= 0 && m_Position != m_StatedSize;
    }

    // The archive stands before the member, which must be closed first.
    SharedArchive m_pArchive;
    std::unique_ptr<zip_file_t, ZipMemberCloser> m_pFile;
    std::int64_t m_StatedSize;
    std::int64_t m_Position = 0;
};

std::int64_t statedSize(zip_t* i_pArchive, std::uint64_t i_Index)
{
    zip_stat_t status;
    zip_stat_init(&status);
    if (zip_stat_index(i_pArchive, i_Index, 0, &status) != 0 || (status.valid & ZIP_STAT_SIZE) == 0)
    {
        return -1;
    }
    constexpr auto largest = static_cast<zip_uint64_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(std::min(status.size, largest));
}

class LibZipArchive final : public ZipArchive
{
public:
    explicit LibZipArchive(SharedArchive i_pArchive) noexcept : m_pArchive(std::move(i_pArchive)) {}

    std::int64_t count() const override { return zip_get_num_entries(m_pArchive.get(), 0); }

    String nameOf(std::uint64_t i_Index) const override
    {
        return String(zip_get_name(m_pArchive.get(), i_Index, ZIP_FL_ENC_GUESS));
    }

    std::unique_ptr<InputStream> open(std::uint64_t i_Index) override
    {
        // A member that cannot be opened is damaged data: its stream has no file and reads -1.
        std::unique_ptr<zip_file_t, ZipMemberCloser> pFile(zip_fopen_index(m_pArchive.get(), i_Index, 0));
        if (pFile == nullptr && isMemoryError(*zip_get_error(m_pArchive.get())))
        {
            throw std::bad_alloc();
        }
        const std::int64_t size = statedSize(m_pArchive.get(), i_Index);
        auto pStream = std::make_unique<ZipEntryStream>(m_pArchive, pFile.get(), size);
        // From here on the stream is the one to close the member.
        static_cast<void>(pFile.release());
        return pStream;
    }

private:
    SharedArchive m_pArchive;
};

} // namespace

ZipArchive* openZipArchive(const String& i_Path)
{
    zip_t* const pHandle = openArchiveHandle(i_Path);
    if (pHandle == nullptr)
    {
        return nullptr;
    }
    SharedArchive pArchive(pHandle, zip_discard);
    return new LibZipArchive(std::move(pArchive));
}
