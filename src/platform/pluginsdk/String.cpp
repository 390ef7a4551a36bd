#include "pluginsdk/String.h"

namespace PluginSDK
{

String& String::operator=(const wchar_t* i_Text)
{
    if (i_Text == nullptr)
    {
        m_Text.clear();
    }
    else
    {
        m_Text.assign(i_Text);
    }
    return *this;
}

} // namespace PluginSDK
