#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"

namespace PluginSDK
{

class MINIMAL_API StringVector
{
public:
    TErrorCode addString(const wchar_t* i_Text);
    void removeAll();

    /// The texts, each followed by a blank.
    const ::String& joined() const;

private:
    ::String m_Joined;
};

} // namespace PluginSDK
