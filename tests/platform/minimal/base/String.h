#pragma once

#include <cstddef>
#include <string>

#if defined(_WIN32)
#error "the minimal platform is one for Linux"
#endif
#define MINIMAL_API __attribute__((visibility("default")))

/// Wide text with the operations that the plug-in relies on, and no other.
class MINIMAL_API String
{
public:
    String();
    String(const wchar_t* i_Text);
    String(const wchar_t* i_Text, std::size_t i_Length);
    String(const char* i_Text);
    String(const char* i_Text, std::size_t i_Length);
    String(const String& i_Other);
    String& operator=(const String& i_Other);
    ~String();

    int length() const;
    String concat(const String& i_Other) const;
    static String valueOf(int i_Value);
    static String valueOf(unsigned i_Value);
    static String valueOf(long i_Value);
    static String valueOf(unsigned long i_Value);
    static String valueOf(long long i_Value);
    static String valueOf(unsigned long long i_Value);
    std::string toNarrow() const;
    explicit operator const wchar_t*() const;

private:
    wchar_t* m_pUnits;
    int m_Length;
};
