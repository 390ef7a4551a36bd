#include "base/ZipFile.h"

#include "base/File.h"
#include "base/InputStream.h"
#include "base/zip/ZipModule.h"

#include <map>
#include <string_view>

namespace
{

/// True when the file begins like an archive with members or like an empty one.
bool startsWithSignature(const String& i_Path)
{
    char bytes[4] = {};
    const std::string_view signature(bytes, File(i_Path).readStart(bytes, sizeof bytes));
    return signature == "PK\x03\x04" || signature == "PK\x05\x06";
}

/// Null when the path does not name an archive. A path that is no regular file is never opened.
std::unique_ptr<ZipArchive> openArchive(const String& i_Path)
{
    return File(i_Path).exists() ? ZipModule::open(i_Path) : nullptr;
}

} // namespace

struct ZipFile::Impl
{
    std::unique_ptr<ZipArchive> pArchive;
    std::map<int, ZipEntry> entries;
};

ZipFile::ZipFile(const String& i_Path) : m_pImpl(std::make_unique<Impl>())
{
    m_pImpl->pArchive = openArchive(i_Path);
}

ZipFile::~ZipFile() = default;

int ZipFile::isValid(const String& i_Path)
{
    return startsWithSignature(i_Path) && openArchive(i_Path) != nullptr ? 0 : 1;
}

ZipEntry* ZipFile::getEntry(int i_Index)
{
    const ZipArchive* const pArchive = m_pImpl->pArchive.get();
    if (pArchive == nullptr || i_Index < 0 || i_Index >= pArchive->count())
    {
        return nullptr;
    }
    const auto index = static_cast<std::uint64_t>(i_Index);
    return &m_pImpl->entries.try_emplace(i_Index, index, pArchive->nameOf(index)).first->second;
}

InputStream* ZipFile::getEntryStream(ZipEntry* i_Entry)
{
    ZipArchive* const pArchive = m_pImpl->pArchive.get();
    return pArchive == nullptr || i_Entry == nullptr ? nullptr : pArchive->open(i_Entry->index()).release();
}
