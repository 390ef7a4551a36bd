#pragma once

#include "xmlproxy/XmlName.h"

#include <memory>
#include <string_view>
#include <unordered_map>

/// The different names of one document, each kept once.
///
/// Ownership: shares each name with the nodes that have it.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlNameTest.cpp
class XmlNameTable
{
public:
    XmlNameTable() = default;
    XmlNameTable(const XmlNameTable&) = delete;
    XmlNameTable& operator=(const XmlNameTable&) = delete;

    /// The one name of this text, which is made when it is new. Never null.
    std::shared_ptr<const XmlName> intern(const String& i_Text);

private:
    /// The keys are views of the names' own texts.
    std::unordered_map<std::wstring_view, std::shared_ptr<const XmlName>> m_Names;
};
