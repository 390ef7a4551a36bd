// Writes the configuration document of the benchmarks.
//
//     write_document MEGABYTES FILE

#include "Documents.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int i_Count, char** i_pArguments)
{
    const unsigned long megabytes = i_Count == 3 ? std::strtoul(i_pArguments[1], nullptr, 10) : 0;
    if (megabytes == 0)
    {
        std::fputs("usage: write_document MEGABYTES FILE\n", stderr);
        return 2;
    }
    try
    {
        DocumentSize size;
        size.bytes = megabytes << 20;
        writeDocument(i_pArguments[2], Shape::Config, size);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
