// Input: the bytes of a document.
#include "FuzzTarget.h"

#include "TreeChecks.h"
#include "plain/PlainComparison.h"

#include "xmlproxy/DefaultSAXHandler.h"

#include <memory>
#include <sstream>
#include <string>

namespace
{

std::string quoted(std::string_view i_Bytes)
{
    std::ostringstream out;
    for (const char byte : i_Bytes)
    {
        const auto value = static_cast<unsigned char>(byte);
        if (value >= 0x20 && value < 0x7F)
        {
            out << byte;
        }
        else
        {
            out << "\\" << std::oct << int{value};
        }
    }
    return out.str();
}

/// Keeps the one root.
class RootSink final : public NodeSink
{
public:
    TErrorCode setRoot(Node* i_pRoot) override
    {
        m_pRoot.reset(i_pRoot);
        return 0;
    }
    const Node* root() const noexcept { return m_pRoot.get(); }

private:
    std::unique_ptr<Node> m_pRoot;
};

void checkTree(std::string_view i_Document)
{
    RootSink sink;
    DefaultSAXHandler handler(&sink, 0);
    PlainParser parser(&handler);
    PlainBytesSource source(i_Document);
    FUZZ_CHECK(parser.parse(source) == 0 && sink.root(), quoted(i_Document));
    FUZZ_CHECK(checkParsedTree(*sink.root()) == 0, quoted(i_Document));
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    static PlainComparison s_Parsers;
    const CheckChoice choice(i_Bytes, 8);
    const bool isTaken = s_Parsers.takes(i_Bytes, 1 + i_Bytes.size() % 61);
    if (isTaken)
    {
        FUZZ_CHECK(s_Parsers.expected(i_Bytes) == s_Parsers.taken(), quoted(i_Bytes));
    }
    if (choice.isDue(0) && isTaken)
    {
        checkTree(i_Bytes);
    }
    if (choice.isDue(1))
    {
        const std::wstring events = s_Parsers.taken();
        FUZZ_CHECK(s_Parsers.takes(i_Bytes) == isTaken, quoted(i_Bytes));
        FUZZ_CHECK(!isTaken || s_Parsers.taken() == events, quoted(i_Bytes));
    }
}
