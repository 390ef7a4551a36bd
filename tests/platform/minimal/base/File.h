#pragma once

#include "base/String.h"

class MINIMAL_API File
{
public:
    explicit File(const String& i_Path);
    int exists() const;

private:
    String m_Path;
};
