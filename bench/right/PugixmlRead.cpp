// Reads a document with pugixml as it comes and prints the values that an expression selects.
//
//     pugixml_read EXPRESSION FILE
//
// The texts are UTF-8, each ended by a null character. The status is 0 when there was a value, 1 when there was none,
// and 2 when pugixml refused the document or the expression, whose reason goes to standard error.

#include <cstdio>
#include <exception>
#include <pugixml.hpp>

namespace
{

int read(const char* const i_pExpression, const char* const i_pPath)
{
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file(i_pPath);
    if (!result)
    {
        std::fprintf(stderr, "%s: %s\n", i_pPath, result.description());
        return 2;
    }
    pugi::xpath_node_set nodes = document.select_nodes(i_pExpression);
    nodes.sort();
    for (const pugi::xpath_node& node : nodes)
    {
        std::fputs(node.attribute().value(), stdout);
        std::fputc('\0', stdout);
    }
    return nodes.empty() ? 1 : 0;
}

} // namespace

int main(int i_Count, char** i_pArguments)
{
    if (i_Count != 3)
    {
        std::fputs("usage: pugixml_read EXPRESSION FILE\n", stderr);
        return 2;
    }
    try
    {
        return read(i_pArguments[1], i_pArguments[2]);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
