#pragma once

#include "base/String.h"
#include "support/TemporaryFolder.h"

#include <string_view>

/// One file that holds one input after the other; lives as long as the process.
class InputFile
{
public:
    /// Its path, now holding these bytes.
    static String holding(std::string_view i_Bytes, std::string_view i_Name = "input")
    {
        static const TemporaryFolder s_Folder;
        return {s_Folder.write(i_Name, i_Bytes).c_str()};
    }
};
