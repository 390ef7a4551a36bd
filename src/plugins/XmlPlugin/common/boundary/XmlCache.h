#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"

#include <map>
#include <memory>
#include <string_view>

class Node;

namespace XmlPlugin
{

/// Every document that was parsed without error, by the text that named its file.
///
/// The texts are not normalised: one file named in two ways is parsed and kept twice. Nothing is
/// ever dropped, and a file that has changed on disk is not read again, until the whole cache is
/// destroyed.
///
/// Ownership: owns the trees; they are lent out until the cache is destroyed.
/// Threads: one at a time, nothing is locked.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlCacheTest.cpp
class XmlCache
{
public:
    virtual ~XmlCache();
    XmlCache(const XmlCache&) = delete;
    XmlCache& operator=(const XmlCache&) = delete;

    /// The one cache of the process, made on first use; null when it could not be made.
    static XmlCache* getInstance();
    /// Destroys the one cache and its trees; the next `getInstance` makes an empty one. May be
    /// called without a cache.
    static void destroyInstance() noexcept;

    /// 0 with the tree in \p o_pRoot (null for a document that produced no element), or -15103
    /// with null when the file cannot be read as XML. A file that failed is tried again each time.
    TErrorCode getDocument(const String& i_File, Node*& o_pRoot) { return getDocument(i_File.view(), o_pRoot); }
    /// The same of a name in UTF-16 code units.
    TErrorCode getDocument(std::wstring_view i_File, Node*& o_pRoot);

private:
    XmlCache() = default;

    struct Order
    {
        using is_transparent = void; // looked up without a copy of the name
        bool operator()(const String& i_Left, const String& i_Right) const noexcept
        {
            return i_Left.view() < i_Right.view();
        }
        bool operator()(const String& i_Left, std::wstring_view i_Right) const noexcept
        {
            return i_Left.view() < i_Right;
        }
        bool operator()(std::wstring_view i_Left, const String& i_Right) const noexcept
        {
            return i_Left < i_Right.view();
        }
    };

    static XmlCache* s_pInstance;
    std::map<String, std::unique_ptr<Node>, Order> m_Documents;
};

} // namespace XmlPlugin
