// pugixml: its document tree, and a query object made each time.

#include "Peer.h"
#include "WideList.h"

#include <pugixml.hpp>
#include <stdexcept>

namespace
{

class PugixmlPeer final : public Peer
{
public:
    void load(const std::string& i_Path) override
    {
        if (!m_Document.load_file(i_Path.c_str()))
        {
            throw std::runtime_error("cannot read " + i_Path);
        }
    }
    void unload() override { m_Document.reset(); }
    void prepare(const std::string& i_Expression) override { m_Expression = i_Expression; }

    std::size_t query() override
    {
        const pugi::xpath_query query(m_Expression.c_str());
        m_Values = WideList();
        if (query.return_type() != pugi::xpath_type_node_set)
        {
            m_Values.add(std::string_view(query.evaluate_string(m_Document)));
            return 1;
        }
        for (const pugi::xpath_node& node : sorted(query))
        {
            m_Values.add(std::string_view(node.attribute() ? node.attribute().value() : node.node().text().get()));
        }
        return m_Values.count();
    }

    std::size_t evaluate() override
    {
        const pugi::xpath_query query(m_Expression.c_str());
        if (query.return_type() == pugi::xpath_type_node_set)
        {
            return sorted(query).size();
        }
        // Into room on the stack, as one does who wants no string.
        char text[64];
        query.evaluate_string(text, sizeof text, m_Document);
        return 1;
    }

    std::vector<std::string> values() const override { return m_Values.narrow(); }

private:
    /// In document order, as the others answer.
    pugi::xpath_node_set sorted(const pugi::xpath_query& i_Query) const
    {
        pugi::xpath_node_set nodes = i_Query.evaluate_node_set(m_Document);
        nodes.sort();
        return nodes;
    }

    pugi::xml_document m_Document;
    std::string m_Expression;
    WideList m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char*)
{
    return new PugixmlPeer;
}
