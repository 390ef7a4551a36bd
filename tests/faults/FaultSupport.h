#pragma once

#include "base/String.h"
#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"
#include "xmlproxy/NodeReader.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <string>
#include <string_view>

/// Holds the parser library open, so that the parses of a test do not make it anew each time.
struct HeldLibrary
{
    HeldLibrary() { xercesc::XMLPlatformUtils::Initialize(); }
    ~HeldLibrary() { xercesc::XMLPlatformUtils::Terminate(); }
    HeldLibrary(const HeldLibrary&) = delete;
    HeldLibrary& operator=(const HeldLibrary&) = delete;
};

/// Has all documents read by the parser library, as long as it lives.
struct ParserLibraryOnly
{
    ParserLibraryOnly() { NodeReader::setReadsPlainDocuments(false); }
    ~ParserLibraryOnly() { NodeReader::setReadsPlainDocuments(wasOn); }
    ParserLibraryOnly(const ParserLibraryOnly&) = delete;
    ParserLibraryOnly& operator=(const ParserLibraryOnly&) = delete;

    const bool wasOn = NodeReader::readsPlainDocuments();
};

/// What the plug-in answers for a file that it does not know yet: the values with a blank behind
/// each, or "error CODE" when that is not 0. Paths are UTF-8.
inline std::string answerOf(const std::string& i_File, std::string_view i_XPath)
{
    XmlPlugin::XmlCache::destroyInstance();
    XmlPlugin::XmlValues expression;
    expression.setProperty(L"file", String(i_File.c_str()).c_str());
    expression.setProperty(L"xpath", String(i_XPath.data(), i_XPath.size()).c_str());
    PluginSDK::StringVector values;
    const TErrorCode code = expression.evaluate(values);
    XmlPlugin::XmlCache::destroyInstance();
    std::string answer = code == 0 ? "" : "error " + std::to_string(code);
    for (std::size_t index = 0; index < values.count(); ++index)
    {
        answer += String(values.get(index)).toNarrow() + " ";
    }
    return answer;
}
