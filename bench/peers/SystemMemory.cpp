#include "SystemMemory.h"

#include <algorithm>
#include <filesystem>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

/// libxml2's, which is the largest.
constexpr std::size_t s_TreeBytesAByte = 18;

} // namespace

void supplyMemoryFor(const std::string& i_Document)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t half = static_cast<std::size_t>(sysconf(_SC_AVPHYS_PAGES)) * page / 2;
    const std::size_t bytes = std::min(std::filesystem::file_size(i_Document) * s_TreeBytesAByte, half);
    void* pMemory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pMemory == MAP_FAILED)
    {
        return;
    }
    madvise(pMemory, bytes, MADV_HUGEPAGE);
    for (std::size_t place = 0; place < bytes; place += page)
    {
        static_cast<volatile char*>(pMemory)[place] = 1;
    }
    munmap(pMemory, bytes);
}
