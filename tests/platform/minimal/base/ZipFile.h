#pragma once

#include "base/InputStream.h"
#include "base/String.h"

struct ZipEntry
{
};

/// An archive here is any file whose name ends with ".zip"; the file's own bytes are its first entry.
class MINIMAL_API ZipFile
{
public:
    explicit ZipFile(const String& i_Path);
    static int isValid(const String& i_Path);
    ZipEntry* getEntry(int i_Index);
    InputStream* getEntryStream(ZipEntry* i_Entry);

private:
    String m_Path;
    ZipEntry m_Entry;
};
