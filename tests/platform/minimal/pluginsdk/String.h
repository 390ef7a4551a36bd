#pragma once

#include "base/String.h"

namespace PluginSDK
{

class MINIMAL_API String
{
public:
    String& operator=(const wchar_t* i_Text);
    const ::String& text() const;

private:
    ::String m_Text;
};

} // namespace PluginSDK
