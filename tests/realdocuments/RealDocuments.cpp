#include "RealDocuments.h"

#include "boundary/XPathEngine.h"
#include "boundary/XmlCache.h"
#include "support/Process.h"
#include "values/XPathOutputList.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>

namespace
{

/// `xmllint --xpath` ends with this when the selection is empty.
constexpr int s_NothingSelected = 10;

/// The documents stay in the cache from test to test, and go with the last one.
class CacheEnd : public testing::Environment
{
public:
    void TearDown() override { XmlPlugin::XmlCache::destroyInstance(); }
};

[[maybe_unused]] const testing::Environment* const s_pCacheEnd = testing::AddGlobalTestEnvironment(new CacheEnd);

void appendUtf8(std::uint32_t i_Character, std::string& io_Text)
{
    const auto tail = [&](unsigned i_Shift)
    { io_Text += static_cast<char>(0x80U | ((i_Character >> i_Shift) & 0x3FU)); };
    if (i_Character < 0x80)
    {
        io_Text += static_cast<char>(i_Character);
    }
    else if (i_Character < 0x800)
    {
        io_Text += static_cast<char>(0xC0U | (i_Character >> 6U));
        tail(0);
    }
    else if (i_Character < 0x10000)
    {
        io_Text += static_cast<char>(0xE0U | (i_Character >> 12U));
        tail(6);
        tail(0);
    }
    else
    {
        io_Text += static_cast<char>(0xF0U | (i_Character >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// Appends what the reference between "&" and ";" stands for.
void appendReference(std::string_view i_Name, std::string& io_Text)
{
    static const std::map<std::string_view, char> s_Entities = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    const auto entity = s_Entities.find(i_Name);
    if (entity != s_Entities.end())
    {
        io_Text += entity->second;
        return;
    }
    const bool isHexadecimal = i_Name.starts_with("#x");
    const std::string_view digits = i_Name.substr(isHexadecimal ? 2 : 1);
    std::uint32_t character = 0;
    const auto [pEnd, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), character, isHexadecimal ? 16 : 10);
    if (!i_Name.starts_with('#') || error != std::errc() || pEnd != digits.data() + digits.size())
    {
        throw std::runtime_error("xmllint printed an unknown reference: " + std::string(i_Name));
    }
    appendUtf8(character, io_Text);
}

std::string withoutReferences(std::string_view i_Text)
{
    std::string text;
    while (!i_Text.empty())
    {
        const std::size_t begin = i_Text.find('&');
        text += i_Text.substr(0, begin);
        const std::size_t end = begin == std::string_view::npos ? begin : i_Text.find(';', begin);
        if (end == std::string_view::npos)
        {
            break;
        }
        appendReference(i_Text.substr(begin + 1, end - begin - 1), text);
        i_Text.remove_prefix(end + 1);
    }
    return text;
}

/// Takes ` name="value"` and the line feed after it from the front; the value still has its
/// references. Nothing, and no change, when the text does not begin so.
std::optional<std::string_view> takeAttribute(std::string_view& io_Text)
{
    const std::size_t equals = io_Text.find("=\"");
    if (!io_Text.starts_with(' ') || equals == std::string_view::npos || equals < 2 ||
        io_Text.substr(1, equals - 1).find_first_of(" \"<>=\n") != std::string_view::npos)
    {
        return std::nullopt;
    }
    const std::size_t begin = equals + 2;
    const std::size_t end = io_Text.find('"', begin);
    if (end == std::string_view::npos)
    {
        return std::nullopt;
    }
    const std::string_view value = io_Text.substr(begin, end - begin);
    io_Text.remove_prefix(end + 1);
    if (io_Text.starts_with('\n'))
    {
        io_Text.remove_prefix(1);
    }
    return value;
}

} // namespace

std::string pathOf(Document i_Document)
{
    const bool isWayland = i_Document == Document::Wayland;
    const std::string path = isWayland ? WAYLAND_XML : VULKAN_XML;
    if (!std::filesystem::is_regular_file(path))
    {
        throw std::runtime_error(isWayland ? "wayland.xml is missing: install libwayland-dev and run CMake again"
                                           : "vk.xml is missing: install libvulkan-dev and run CMake again");
    }
    return path;
}

std::string print(const Answers& i_Answers)
{
    if (!i_Answers.failure.empty())
    {
        return i_Answers.failure;
    }
    if (i_Answers.values.empty())
    {
        return "(none)";
    }
    std::string text = i_Answers.values.front();
    for (std::size_t i = 1; i < i_Answers.values.size(); ++i)
    {
        text += " | " + i_Answers.values[i];
    }
    return text;
}

Answers askPlugin(const std::string& i_Path, const std::string& i_Expression)
{
    XmlPlugin::XPathOutputList records;
    const TErrorCode code =
        XmlPlugin::XPathEngine().start(String(i_Expression.c_str()), String(i_Path.c_str()), records);
    Answers answers;
    if (code != 0)
    {
        answers.failure = "error " + std::to_string(code);
    }
    for (const XmlPlugin::XPathOutputElement* pRecord : records)
    {
        answers.values.push_back(pRecord->m_Value.toNarrow());
    }
    return answers;
}

Answers askXmlLint(const std::string& i_Path, const std::string& i_Expression)
{
    ProcessResult result;
    try
    {
        // Neither the network nor a changed message is wanted.
        result = runProcess({"xmllint", "--nonet", "--xpath", i_Expression, i_Path}, {"", {{"LC_ALL", "C"}}});
    }
    catch (const std::runtime_error& error)
    {
        throw std::runtime_error(std::string(error.what()) + ": install libxml2-utils");
    }
    if (result.status == 0)
    {
        return {readXmlLintOutput(result.out), ""};
    }
    if (result.status == s_NothingSelected)
    {
        return {};
    }
    return {{}, "xmllint ended with " + std::to_string(result.status) + ": " + result.err};
}

std::vector<std::string> readXmlLintOutput(std::string_view i_Output)
{
    std::vector<std::string> values;
    std::string_view rest = i_Output;
    while (const std::optional<std::string_view> value = takeAttribute(rest))
    {
        values.push_back(withoutReferences(*value));
    }
    if (rest.empty() && !values.empty())
    {
        return values;
    }
    if (i_Output.ends_with('\n'))
    {
        i_Output.remove_suffix(1);
    }
    return {std::string(i_Output)};
}
