// Input: bytes that choose the productions of a document type and of the document that uses it. The document is read,
// or has one counted error; it never has more than its own text and what its entities may add.
#include "FuzzTarget.h"
#include "InputFile.h"

#include "common/xmlproxy/TestTrees.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/XercesParser.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{

/// Small, so that an input that asks for more is done soon.
constexpr std::size_t s_Limit = std::size_t{1} << 20;
constexpr std::size_t s_Factor = 8;

class DtdWriter
{
public:
    explicit DtdWriter(std::string_view i_Bytes) noexcept : m_Bytes(i_Bytes) {}

    std::string document()
    {
        std::string text = "<!DOCTYPE a [\n";
        while (more())
        {
            text += declaration() + "\n";
            if (below(16) == 0)
            {
                break;
            }
        }
        return text + "]>\n<a x='" + value(2) + "'>" + content(3) + "</a>";
    }

private:
    bool more() const noexcept { return m_Next < m_Bytes.size(); }
    unsigned byte() noexcept { return more() ? static_cast<unsigned char>(m_Bytes[m_Next++]) : 0; }
    unsigned below(unsigned i_Count) noexcept { return byte() % i_Count; }
    std::string number(unsigned i_Count) { return std::to_string(below(i_Count)); }

    std::string declaration()
    {
        switch (below(12))
        {
        case 0:
        case 1:
        case 2:
            return "<!ENTITY e" + number(8) + " '" + value(below(20)) + "'>";
        case 3:
        case 4:
            return "<!ENTITY % p" + number(6) + " '" + parameter() + "'>";
        case 5:
            return "%p" + number(6) + ";";
        case 6:
            return "<!ELEMENT b" + number(3) + " " + model(4) + ">";
        case 7:
            return "<!ATTLIST b" + number(3) + " y" + number(4) + " " + type() + " '" + value(below(20)) + "'>";
        case 8:
            return "<!ENTITY e" + number(8) + " '" + content(2) + "'>";
        case 9:
            return "<!NOTATION n" + number(2) + " SYSTEM 'n'>";
        case 10:
            return "<!ENTITY e" + number(8) + " SYSTEM '" + (below(2) == 0 ? "input" : "http://host.invalid/") + "'>";
        default:
            return below(2) == 0 ? "<!--" + std::string(byte(), 'c') + "-->" : "<?p " + std::string(byte(), 'i') + "?>";
        }
    }

    /// Text and references.
    std::string value(unsigned i_Parts)
    {
        std::string text;
        for (; i_Parts > 0; --i_Parts)
        {
            switch (below(4))
            {
            case 0:
                text += std::string(byte(), 'v');
                break;
            case 1:
                text += "&#" + std::to_string(48 + below(40)) + ";";
                break;
            default:
                text += "&e" + number(8) + ";";
                break;
            }
        }
        return text;
    }

    /// What a parameter entity stands for: references to others, or declarations.
    std::string parameter()
    {
        std::string text;
        for (unsigned parts = below(6); parts > 0; --parts)
        {
            switch (below(4))
            {
            case 0:
                text += "<!ENTITY e" + number(8) + " \"&#38;e" + number(8) + ";\">";
                break;
            case 1:
                text += "<!ELEMENT b" + number(3) + " " + model(2) + ">";
                break;
            default:
                text += "&#37;p" + number(6) + ";";
                break;
            }
        }
        return text;
    }

    std::string content(unsigned i_Depth)
    {
        std::string text;
        for (unsigned parts = below(6); parts > 0; --parts)
        {
            const std::string name = "b" + number(3);
            text += i_Depth == 0 || below(2) == 0 ? "&e" + number(8) + ";"
                                                  : "<" + name + ">" + content(i_Depth - 1) + "</" + name + ">";
        }
        return text;
    }

    std::string model(unsigned i_Depth)
    {
        static constexpr const char* s_Repeats[] = {"", "?", "*", "+"};
        const unsigned kind = below(6);
        if (i_Depth == 0 || kind < 2)
        {
            return kind == 0 ? "EMPTY" : "(#PCDATA|b0)*";
        }
        std::string text = "(";
        for (unsigned parts = below(5) + 1; parts > 0; --parts)
        {
            text += group(i_Depth - 1) + s_Repeats[below(4)] + (parts == 1 ? "" : kind < 4 ? "," : "|");
        }
        return text + ")" + s_Repeats[below(4)];
    }

    std::string group(unsigned i_Depth)
    {
        return i_Depth == 0 || below(2) == 0 ? "b" + number(3) : "(b" + number(3) + "," + group(i_Depth - 1) + ")";
    }

    std::string type()
    {
        static constexpr const char* s_Types[] = {"CDATA", "NMTOKENS", "ID", "(v|w)"};
        return s_Types[below(4)];
    }

    std::string_view m_Bytes;
    std::size_t m_Next = 0;
};

/// Elements, attributes and units of values.
std::size_t sizeOf(const Node& i_Root)
{
    std::size_t size = 0;
    std::vector<const Node*> nodes{&i_Root};
    while (!nodes.empty())
    {
        const Node* pNode = nodes.back();
        nodes.pop_back();
        const AttributeTable* pTable = pNode->attributes();
        for (int index = 0; pTable && index < pTable->count(); ++index)
        {
            size += 1 + pTable->valueAt(index).size();
        }
        for (const Node* pChild : pNode->children())
        {
            nodes.push_back(pChild);
        }
        ++size;
    }
    return size;
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    const std::string document = DtdWriter(i_Bytes).document();
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 0);
    XercesParser parser(&handler);
    parser.setExpansionLimit(s_Limit);
    const TErrorCode code = parser.parse(InputFile::holding(document), nullptr);

    FUZZ_CHECK(code == 0, std::to_string(code) + "\n" + document);
    FUZZ_CHECK((parser.errorCount() == 0) == sink.messages.empty(), document);
    FUZZ_CHECK(parser.errorCount() > 0 || sink.roots.size() == 1, document);
    for (const auto& pRoot : sink.roots)
    {
        const std::size_t most = document.size() + std::max(s_Limit, s_Factor * document.size());
        FUZZ_CHECK(sizeOf(*pRoot) <= most, document);
    }
}
