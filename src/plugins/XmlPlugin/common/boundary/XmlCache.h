#pragma once

#include "base/ErrorCode.h"
#include "xmlproxy/XmlText.h"

#include <map>
#include <memory>
#include <string_view>

class Node;

namespace XmlPlugin
{

/// All documents that were parsed without error, by the text that named their file.
///
/// The texts are not normalised: a file that is named in two ways is parsed and kept twice. Until the whole cache is
/// destroyed, nothing is dropped, and a file that has changed on disk is not read again.
///
/// Ownership: owns the trees, which are valid until the cache is destroyed.
/// Threads: one at a time; there are no locks.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlCacheTest.cpp
class XmlCache
{
public:
    virtual ~XmlCache();
    XmlCache(const XmlCache&) = delete;
    XmlCache& operator=(const XmlCache&) = delete;

    /// The only cache of the process, created on first use; null if it could not be created.
    static XmlCache* getInstance();
    /// Destroys the cache and its trees; the next `getInstance` creates an empty one. May be called if there is no
    /// cache.
    static void destroyInstance() noexcept;

    /// Returns 0 with the tree in \p o_pRoot (null for a document that produced no element), or -15103 with null if the
    /// file cannot be read as XML. A file that failed is tried again on every call.
    TErrorCode getDocument(const String& i_File, Node*& o_pRoot) { return getDocument(viewOf(i_File), o_pRoot); }
    /// Same, for a name in UTF-16 code units.
    TErrorCode getDocument(std::wstring_view i_File, Node*& o_pRoot);

private:
    XmlCache() = default;

    struct Order
    {
        using is_transparent = void; // allows a lookup without a copy of the name
        bool operator()(const String& i_Left, const String& i_Right) const noexcept
        {
            return viewOf(i_Left) < viewOf(i_Right);
        }
        bool operator()(const String& i_Left, std::wstring_view i_Right) const noexcept
        {
            return viewOf(i_Left) < i_Right;
        }
        bool operator()(std::wstring_view i_Left, const String& i_Right) const noexcept
        {
            return i_Left < viewOf(i_Right);
        }
    };

    static XmlCache* s_pInstance;
    std::map<String, std::unique_ptr<Node>, Order> m_Documents;
};

} // namespace XmlPlugin
