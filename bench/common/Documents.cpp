#include "Documents.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <vector>

namespace
{

constexpr std::uint64_t s_Seed = 20240229;
constexpr std::size_t s_ItemsInGroup = 49;
constexpr std::size_t s_DeepLevels = 500;
constexpr std::size_t s_BlockLevels = 20;

constexpr std::array s_Words = {"amber",  "basin", "cedar",  "delta",  "ember", "fjord", "grove",   "harbour",
                                "island", "jetty", "kernel", "lagoon", "mesa",  "north", "orchard", "plain"};

/// A small generator of its own: those of the standard library leave their distributions open.
class Random
{
public:
    std::size_t below(std::size_t i_Limit) noexcept
    {
        m_State += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = m_State;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return static_cast<std::size_t>((mixed ^ (mixed >> 31U)) % i_Limit);
    }
    const char* word() noexcept { return s_Words[below(s_Words.size())]; }

private:
    std::uint64_t m_State = s_Seed;
};

/// A document under construction.
class Maker
{
public:
    explicit Maker(DocumentSize i_Size)
        : m_Elements(i_Size.elements == 0 ? std::numeric_limits<std::size_t>::max() : i_Size.elements),
          m_Bytes(i_Size.bytes == 0 ? std::numeric_limits<std::size_t>::max() : i_Size.bytes)
    {
        m_Text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    }

    void config();
    void wide();
    void deep();
    void textHeavy();
    void blocks();
    void chain();

    std::string& text() noexcept { return m_Text; }
    std::size_t elements() const noexcept { return m_Count; }

private:
    bool isFull() const noexcept { return m_Count >= m_Elements || m_Text.size() >= m_Bytes; }
    void open(const char* i_Tag)
    {
        ++m_Count;
        m_Text += i_Tag;
    }
    Maker& put(const char* i_Text)
    {
        m_Text += i_Text;
        return *this;
    }
    Maker& put(std::size_t i_Number)
    {
        m_Text += std::to_string(i_Number);
        return *this;
    }
    void item(std::size_t i_Number);
    void sentence(std::size_t i_Words);
    void nest(const char* i_Name, std::size_t i_Levels, bool i_IsOpening);

    std::size_t m_Elements;
    std::size_t m_Bytes;
    std::size_t m_Count = 0;
    std::string m_Text;
    Random m_Random;
};

void Maker::sentence(std::size_t i_Words)
{
    for (std::size_t i = 0; i < i_Words; ++i)
    {
        put(i == 0 ? "" : " ").put(m_Random.word());
    }
}

void Maker::item(std::size_t i_Number)
{
    open("    <item id=\"x");
    put(i_Number).put("\" name=\"").put(m_Random.word()).put("-").put(m_Random.below(10000));
    put("\" value=\"").put(m_Random.below(1000000)).put("\"");
    if (m_Random.below(20) == 0 && !isFull())
    {
        put(">\n");
        open("      <remark>");
        sentence(6);
        put("</remark>\n    </item>\n");
        return;
    }
    put("/>\n");
}

void Maker::config()
{
    open("<root version=\"1\">\n");
    for (std::size_t group = 0, number = 0; !isFull(); ++group)
    {
        open("  <group name=\"g");
        put(group).put("\" kind=\"").put(group % 3 == 0 ? "a" : group % 3 == 1 ? "b" : "c").put("\">\n");
        for (std::size_t i = 0; i < s_ItemsInGroup && !isFull(); ++i)
        {
            item(number++);
        }
        put("  </group>\n");
    }
    put("</root>\n");
}

void Maker::wide()
{
    open("<root>\n");
    for (std::size_t number = 0; !isFull(); ++number)
    {
        open("<row n=\"");
        put(number).put("\" v=\"").put(m_Random.word()).put(m_Random.below(1000)).put("\"/>\n");
    }
    put("</root>\n");
}

void Maker::deep()
{
    open("<root>\n");
    for (std::size_t number = 0; !isFull(); ++number)
    {
        std::size_t levels = 0;
        for (; levels + 1 < s_DeepLevels && !isFull(); ++levels)
        {
            open("<level d=\"");
            put(levels).put("\">");
        }
        open("<leaf id=\"");
        put(number).put("\"/>");
        for (; levels > 0; --levels)
        {
            put("</level>");
        }
        put("\n");
    }
    put("</root>\n");
}

void Maker::textHeavy()
{
    open("<root>\n");
    for (std::size_t chapter = 0; !isFull(); ++chapter)
    {
        open("<chapter title=\"");
        put(m_Random.word()).put(" ").put(chapter).put("\">\n");
        for (std::size_t i = 0; i < 20 && !isFull(); ++i)
        {
            open("<para>");
            sentence(60 + m_Random.below(240));
            put("</para>\n");
        }
        put("</chapter>\n");
    }
    put("</root>\n");
}

void Maker::nest(const char* i_Name, std::size_t i_Levels, bool i_IsOpening)
{
    for (std::size_t i = 0; i < i_Levels; ++i)
    {
        if (i_IsOpening)
        {
            open("<");
        }
        else
        {
            put("</");
        }
        put(i_Name);
        if (i_IsOpening)
        {
            put(" n=\"").put(i).put("\"");
        }
        put(">");
    }
}

void Maker::blocks()
{
    open("<root>\n");
    while (!isFull())
    {
        for (const char* pName : {"a", "b", "c"})
        {
            nest(pName, s_BlockLevels, true);
        }
        for (const char* pName : {"c", "b", "a"})
        {
            nest(pName, s_BlockLevels, false);
        }
        put("\n");
    }
    put("</root>\n");
}

void Maker::chain()
{
    open("<root>\n");
    const std::size_t levels = (m_Elements - 1) / 3;
    for (const char* pName : {"a", "b", "c"})
    {
        nest(pName, levels, true);
    }
    for (const char* pName : {"c", "b", "a"})
    {
        nest(pName, levels, false);
    }
    put("</root>\n");
}

} // namespace

std::string makeDocument(Shape i_Shape, DocumentSize i_Size, DocumentFacts& o_Facts)
{
    Maker maker(i_Size);
    switch (i_Shape)
    {
    case Shape::Config:
        maker.config();
        break;
    case Shape::Wide:
        maker.wide();
        break;
    case Shape::Deep:
        maker.deep();
        break;
    case Shape::TextHeavy:
        maker.textHeavy();
        break;
    case Shape::Blocks:
        maker.blocks();
        break;
    case Shape::Chain:
        maker.chain();
        break;
    }
    o_Facts = {maker.elements(), maker.text().size()};
    return std::move(maker.text());
}

DocumentFacts writeDocument(const std::string& i_Path, Shape i_Shape, DocumentSize i_Size)
{
    DocumentFacts facts;
    const std::string text = makeDocument(i_Shape, i_Size, facts);
    std::ofstream file(i_Path, std::ios::binary);
    file << text;
    if (!file.flush())
    {
        throw std::runtime_error("cannot write " + i_Path);
    }
    return facts;
}
