#include "Shapes.h"

#include "base/String.h"
#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"

#include <ctime>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace
{

// --- Documents ----------------------------------------------------------------------------------

void repeat(std::ostream& o_Out, std::string_view i_Text, std::size_t i_Count)
{
    for (std::size_t index = 0; index < i_Count; ++index)
    {
        o_Out << i_Text;
    }
}

/// \p i_Size characters of the same.
void fill(std::ostream& o_Out, std::size_t i_Size)
{
    const std::string block(65536, 'x');
    for (std::size_t left = i_Size; left > 0;)
    {
        const std::size_t count = left < block.size() ? left : block.size();
        o_Out.write(block.data(), static_cast<std::streamsize>(count));
        left -= count;
    }
}

void small(std::ostream& o_Out, std::size_t)
{
    o_Out << "<a id='1'><a id='2'><b id='3'/></a><b id='4'/></a>";
}

void levels(std::ostream& o_Out, std::size_t i_Size)
{
    repeat(o_Out, "<a>", i_Size - 1);
    o_Out << "<b id='deepest'/>";
    repeat(o_Out, "</a>", i_Size - 1);
}

void siblings(std::ostream& o_Out, std::size_t i_Size)
{
    o_Out << "<a>";
    for (std::size_t index = 1; index <= i_Size; ++index)
    {
        o_Out << "<b id='" << index << "'/>";
    }
    o_Out << "</a>";
}

void attributes(std::ostream& o_Out, std::size_t i_Size)
{
    o_Out << "<a";
    for (std::size_t index = 1; index <= i_Size; ++index)
    {
        o_Out << " n" << index << "='" << index << "'";
    }
    o_Out << "/>";
}

void value(std::ostream& o_Out, std::size_t i_Size)
{
    o_Out << "<a id='";
    fill(o_Out, i_Size);
    o_Out << "'/>";
}

void text(std::ostream& o_Out, std::size_t i_Size)
{
    o_Out << "<a id='1'>";
    fill(o_Out, i_Size);
    o_Out << "</a>";
}

/// A chain of a tenth of the elements, each with nine leaves.
void bushes(std::ostream& o_Out, std::size_t i_Size)
{
    for (std::size_t level = 0; level < i_Size / 10; ++level)
    {
        o_Out << "<a id='" << level << "'>";
        repeat(o_Out, "<b id='x'/>", 9);
    }
    repeat(o_Out, "</a>", i_Size / 10);
}

/// As many steps deep as it has elements.
void chain(std::ostream& o_Out, std::size_t i_Size)
{
    repeat(o_Out, "<a>", i_Size - 1);
    o_Out << "<a id='deepest'/>";
    repeat(o_Out, "</a>", i_Size - 1);
}

/// Levels with an attribute that is empty.
void emptyValues(std::ostream& o_Out, std::size_t i_Size)
{
    repeat(o_Out, "<a e=''>", i_Size);
    repeat(o_Out, "</a>", i_Size);
}

/// Below an element whose name a path reads as an axis and another name.
void colons(std::ostream& o_Out, std::size_t i_Size)
{
    o_Out << "<a><p::q>";
    for (std::size_t index = 1; index <= i_Size; ++index)
    {
        o_Out << "<b id='" << index << "'/>";
    }
    o_Out << "</p::q></a>";
}

// --- Expressions --------------------------------------------------------------------------------

/// \p i_First, and \p i_Next as often as it fits into \p i_Size characters.
std::string row(std::size_t i_Size, std::string_view i_First, std::string_view i_Next)
{
    std::string text(i_First);
    while (text.size() + i_Next.size() <= i_Size)
    {
        text += i_Next;
    }
    return text;
}

/// How often.
std::size_t rowCount(std::size_t i_Size, std::string_view i_First, std::string_view i_Next)
{
    return (i_Size - i_First.size()) / i_Next.size();
}

std::string repeated(std::size_t i_Count, std::string_view i_Text)
{
    std::string text;
    for (std::size_t index = 0; index < i_Count; ++index)
    {
        text += i_Text;
    }
    return text;
}

ShapeAnswer one(const std::string& i_Value)
{
    return {0, 1, i_Value.size(), i_Value.size() <= 20 ? i_Value : ""};
}

/// How the number prints.
ShapeAnswer number(double i_Value)
{
    std::ostringstream stream;
    stream << i_Value;
    return one(stream.str());
}

ShapeAnswer none(std::size_t)
{
    return {0, 0, 0, ""};
}

ShapeAnswer refused(std::size_t)
{
    return {-15105, 0, 0, ""};
}

std::size_t digitsUpTo(std::size_t i_Last)
{
    std::size_t digits = 0;
    for (std::size_t first = 1; first <= i_Last; first *= 10)
    {
        digits += i_Last - first + 1;
    }
    return digits;
}

constexpr std::size_t s_Mebi = std::size_t{1} << 20;

} // namespace

// The names, sizes and answers of all shapes. Expressions of 1 MiB, as long as nothing else is said.
const std::vector<Shape>& shapes()
{
    static const std::vector<Shape> all = {
        // Documents
        {"levels", "levels", 1000000, 20000, levels, [](std::size_t) { return std::string("//b/@id"); },
         [](std::size_t) { return one("deepest"); }},
        {"siblings", "elements", 1000000, 5000, siblings, [](std::size_t) { return std::string("/a/b/@id"); },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, i_Size, digitsUpTo(i_Size), std::to_string(i_Size)};
         }},
        {"siblings_last", "elements", 1000000, 5000, siblings,
         [](std::size_t i_Size) { return "/a/b[" + std::to_string(i_Size) + "]/@id"; },
         [](std::size_t i_Size) { return one(std::to_string(i_Size)); }},
        {"siblings_even", "elements", 1000000, 5000, siblings,
         [](std::size_t) { return std::string("count(/a/b[@id mod 2 = 0])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size / 2)); }},
        {"attributes", "attributes", 100000, 2000, attributes,
         [](std::size_t i_Size) { return "/a/@n" + std::to_string(i_Size); },
         [](std::size_t i_Size) { return one(std::to_string(i_Size)); }},
        {"attributes_all", "attributes", 100000, 2000, attributes, [](std::size_t) { return std::string("/a/@*"); },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, i_Size, digitsUpTo(i_Size), std::to_string(i_Size)};
         }},
        {"value", "bytes", 256 * s_Mebi, 100000, value, [](std::size_t) { return std::string("/a/@id"); },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, 1, i_Size, ""};
         }},
        {"text", "bytes", 1024 * s_Mebi, 100000, text, [](std::size_t) { return std::string("/a/@id"); },
         [](std::size_t) { return one("1"); }},
        {"bushes", "elements", 100000, 1000, bushes, [](std::size_t) { return std::string("//*//*//*//*/@id"); },
         [](std::size_t i_Size)
         {
             // Of the chain from its fourth element on, and all leaves but those of the first two.
             const std::size_t depth = i_Size / 10;
             const std::size_t leaves = (depth - 2) * 9;
             return ShapeAnswer{0, leaves + depth - 3, leaves + digitsUpTo(depth - 1) - digitsUpTo(2), "x"};
         }},
        // Axes whose lists share their nodes
        {"empty_value", "levels", 200000, 2000, emptyValues, [](std::size_t) { return std::string("//a[@e='q']/@e"); },
         none},
        {"empty_text", "levels", 200000, 2000, emptyValues,
         [](std::size_t) { return std::string("//a[string()='q']/@e"); }, none},
        {"empty_child", "levels", 200000, 2000, emptyValues, [](std::size_t) { return std::string("//a[a='q']/@e"); },
         none},
        {"parents", "elements", 200000, 2000, siblings, [](std::size_t) { return std::string("count(//b[..])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size)); }},
        {"parents_by_name", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("count(a/b[parent::a])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size)); }},
        {"colons", "elements", 200000, 2000, colons, [](std::size_t) { return std::string("//b[@id='5']/@id"); }, none},
        {"preceding_first", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("a/b/preceding::b[1]/@id"); }, [](std::size_t) { return one("1"); }},
        {"following_having", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("a/b/following::b[@id]/@id"); },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, i_Size - 1, digitsUpTo(i_Size) - 1, std::to_string(i_Size)};
         }},
        {"preceding_sibling", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("count(a/b/preceding-sibling::b[@id])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size - 1)); }},
        {"ancestor_first", "levels", 200000, 2000, chain,
         [](std::size_t) { return std::string("count(//a/ancestor::a[1])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size - 1)); }},
        {"has_preceding", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("count(//b[preceding::b])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size - 1)); }},
        {"has_following", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("count(//b[following::x])"); }, [](std::size_t) { return one("0"); }},
        {"has_ancestor", "levels", 200000, 2000, chain,
         [](std::size_t) { return std::string("count(//a[ancestor::x])"); }, [](std::size_t) { return one("0"); }},
        {"has_descendant", "levels", 200000, 2000, chain,
         [](std::size_t) { return std::string("count(//a[descendant::x])"); }, [](std::size_t) { return one("0"); }},
        {"counts_preceding", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("//b[count(preceding::b)=7]/@id"); },
         [](std::size_t) { return one("8"); }},
        {"preceding_twice", "elements", 200000, 2000, siblings,
         [](std::size_t) { return std::string("count(//b/preceding::b[preceding::b])"); },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size - 2)); }},
        {"deep_steps", "levels", 20000, 1000, chain, [](std::size_t) { return "count(" + repeated(64, "//a") + ")"; },
         [](std::size_t i_Size) { return number(static_cast<double>(i_Size - 63)); }},
        {"long_part", "bytes", 2 * s_Mebi, 20000, value,
         [](std::size_t i_Size) { return "contains(/a/@id, '" + std::string(i_Size / 2, 'x') + "y')"; },
         [](std::size_t) { return one("false"); }},
        // Expressions
        {"parentheses", "bytes", s_Mebi, 20000, small,
         [](std::size_t i_Size) { return std::string(i_Size / 2, '(') + "1" + std::string(i_Size / 2, ')'); }, refused},
        {"parentheses_open", "bytes", s_Mebi, 20000, small, [](std::size_t i_Size) { return std::string(i_Size, '('); },
         refused},
        {"chain_plus", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", "+1"); },
         [](std::size_t i_Size) { return number(1.0 + static_cast<double>(rowCount(i_Size, "1", "+1"))); }},
        {"chain_minus", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", " - 1"); },
         [](std::size_t i_Size) { return number(1.0 - static_cast<double>(rowCount(i_Size, "1", " - 1"))); }},
        {"chain_times", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", "*1"); },
         [](std::size_t) { return one("1"); }},
        {"chain_div", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", " div 1"); },
         [](std::size_t) { return one("1"); }},
        {"chain_or", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", " or 1"); },
         [](std::size_t) { return one("true"); }},
        {"chain_and", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", " and 1"); },
         [](std::size_t) { return one("true"); }},
        {"chain_equal", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "1", "=1"); },
         [](std::size_t) { return one("true"); }},
        {"chain_less", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return row(i_Size, "0", "<1"); },
         [](std::size_t i_Size) { return one(rowCount(i_Size, "0", "<1") % 2 == 1 ? "true" : "false"); }},
        {"union", "branches", 100000, 500, small,
         [](std::size_t i_Size) { return "/a/@id" + repeated(i_Size - 1, "|/a/@id"); },
         [](std::size_t) { return one("1"); }},
        {"union_different", "branches", 100000, 500, small,
         [](std::size_t i_Size)
         {
             std::string expression = "/a/@id";
             for (std::size_t index = 1; index < i_Size; ++index)
             {
                 expression += "|/a/@n" + std::to_string(index);
             }
             return expression;
         },
         [](std::size_t) { return one("1"); }},
        {"steps", "steps", 100000, 500, chain,
         [](std::size_t i_Size) { return "/a" + repeated(i_Size - 1, "/a") + "/@id"; },
         [](std::size_t) { return one("deepest"); }},
        {"steps_nowhere", "steps", 100000, 500, small,
         [](std::size_t i_Size) { return "/a" + repeated(i_Size - 1, "/a") + "/@id"; }, none},
        {"steps_deep", "steps", 100000, 500, small,
         [](std::size_t i_Size) { return "//a" + repeated(i_Size - 1, "//a") + "/@id"; }, none},
        {"literal", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return "'" + std::string(i_Size - 2, 'x') + "'"; },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, 1, i_Size - 2, ""};
         }},
        {"name", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return std::string(i_Size, 'x'); }, none},
        {"digits", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return "0." + std::string(i_Size - 3, '0') + "1"; },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, 1, i_Size, ""};
         }},
        {"minus_signs", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return std::string(i_Size - 2, '-') + " 1"; },
         [](std::size_t i_Size) { return one(i_Size % 2 == 0 ? "1" : "-1"); }},
        {"blanks", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return "1 " + std::string(i_Size - 5, ' ') + "+ 1"; },
         [](std::size_t) { return one("2"); }},
        {"arguments", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return "concat('a'" + repeated((i_Size - 11) / 4, ",'b'") + ")"; },
         [](std::size_t i_Size) {
             return ShapeAnswer{0, 1, 1 + (i_Size - 11) / 4, ""};
         }},
        {"predicates", "bytes", s_Mebi, 2000, small,
         [](std::size_t i_Size) { return "/a" + repeated((i_Size - 6) / 5, "[@id]") + "/@id"; },
         [](std::size_t) { return one("1"); }},
        {"brackets_open", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return repeated(i_Size / 2, "a["); },
         refused},
        {"calls_open", "bytes", s_Mebi, 2000, small, [](std::size_t i_Size) { return repeated(i_Size / 4, "not("); },
         refused},
    };
    return all;
}

std::ostream& operator<<(std::ostream& io_Out, const ShapeAnswer& i_Answer)
{
    return io_Out << "code " << i_Answer.code << ", " << i_Answer.count << " values, " << i_Answer.characters
                  << " characters, last \"" << i_Answer.last << "\"";
}

namespace
{

double askOnce(const Shape& i_Shape, std::size_t i_Size, const String& i_File, const String& i_Expression)
{
    XmlPlugin::XmlValues expression;
    expression.setProperty(L"file", i_File.c_str());
    expression.setProperty(L"xpath", i_Expression.c_str());
    PluginSDK::StringVector values;
    const std::clock_t begin = std::clock();
    ShapeAnswer answer{expression.evaluate(values), values.count(), 0, ""};
    const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    std::wstring_view last;
    for (std::size_t index = 0; index < values.count(); ++index)
    {
        last = values.get(index);
        answer.characters += last.size();
    }
    answer.last = last.size() <= 20 ? String(last.data(), last.size()).toNarrow() : "";
    if (answer != i_Shape.answer(i_Size))
    {
        std::ostringstream message;
        message << i_Shape.name << " of " << i_Size << ' ' << i_Shape.unit << ": " << answer << " instead of "
                << i_Shape.answer(i_Size);
        throw std::runtime_error(message.str());
    }
    return seconds;
}

} // namespace

ShapeTimes ask(const Shape& i_Shape, std::size_t i_Size, const std::string& i_File)
{
    const String file(i_File.c_str());
    const String expression(i_Shape.expression(i_Size).c_str());
    XmlPlugin::XmlCache::destroyInstance();
    ShapeTimes times{};
    times.first = askOnce(i_Shape, i_Size, file, expression);
    times.second = askOnce(i_Shape, i_Size, file, expression);
    XmlPlugin::XmlCache::destroyInstance();
    return times;
}
