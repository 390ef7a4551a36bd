#include "Comparison.h"

#include "Process.h"
#include "SystemMemory.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace
{

const std::string s_Floor = "xerces";
const std::string s_Plugin = "plugin";
/// Takes so long with large documents that it is asked less often.
const std::string s_Slow = "xalan";
/// The plug-in built without its trace statements.
const std::string s_Untraced = "plugin-untraced";

const std::vector<std::string> s_Readers = {s_Floor, s_Plugin, "libxml2", "xalan", "pugixml"};
const std::vector<std::string> s_Engines = {"pointer-walk", s_Plugin, "libxml2", "xalan", "pugixml"};
const std::vector<std::string> s_FullEngines = {s_Plugin, "libxml2", "xalan", "pugixml"};

const std::vector<std::string> s_Paths = {
    "/root/group/item/@id",
    "//item/@id",
    "//item[@id='x500']/@name",
    "/root/group[2]/item[3]/@id",
    "//group[@kind='b']/item/@name",
    "//item[position()=2]/@id",
    "count(//item)",
    "/root/group/@name | /root/group/item/@id",
};

const std::vector<std::string> s_Scalars = {"1+2*3", "concat('a','b','c')", "substring('12345',2,3)"};

const std::vector<ShapeRow> s_Shapes = {
    {"config", Shape::Config, "//item[@id='x500']/@name"},
    {"wide", Shape::Wide, "/root/row[@n='77']/@v"},
    {"deep", Shape::Deep, "//leaf/@id"},
    {"text", Shape::TextHeavy, "/root/chapter/@title"},
};

constexpr std::size_t s_Megabyte = std::size_t{1} << 20;
constexpr std::size_t s_LargeDocument = 64; ///< megabytes, from which on fewer runs are made
constexpr int s_SmallDocuments = 200;

/// Runs a program with an allocator that keeps what is freed. glibc's gives the memory of a long list back to the
/// system with some queries, and gets it again for the next ones. With which ones depends on what lies beside it: a
/// list of 100,000 values then takes up to three times as long.
const std::vector<std::string> s_KeepingMemory = {
    "env", "GLIBC_TUNABLES=glibc.malloc.trim_threshold=1073741824:glibc.malloc.mmap_threshold=33554432"};

std::vector<double> numbers(const std::string& i_Line)
{
    std::vector<double> found;
    std::istringstream stream(i_Line);
    for (double number = 0; stream >> number;)
    {
        found.push_back(number);
    }
    return found;
}

} // namespace

Comparison::Comparison(std::string i_Program, std::string i_Folder, Extent i_Extent, Results& io_Results)
    : m_Program(std::move(i_Program)),
      m_Libraries(std::filesystem::path(m_Program).parent_path().string()),
      m_Folder(std::move(i_Folder)),
      m_Extent(std::move(i_Extent)),
      m_Results(io_Results)
{
}

std::vector<std::string> Comparison::chosen(const std::vector<std::string>& i_Peers) const
{
    std::vector<std::string> peers;
    for (const std::string& peer : i_Peers)
    {
        if (m_Extent.peers.empty() ||
            std::find(m_Extent.peers.begin(), m_Extent.peers.end(), peer) != m_Extent.peers.end())
        {
            peers.push_back(peer);
        }
    }
    return peers;
}

Task Comparison::task(const std::string& i_What, const std::string& i_Peer, const std::string& i_Document,
                      const std::vector<std::string>& i_Expressions, double i_Amount) const
{
    const bool isPlugin = i_Peer == s_Plugin || i_Peer == s_Untraced;
    const std::string library = m_Libraries + "/peer-" + (isPlugin ? s_Plugin : i_Peer) + ".so";
    const std::string plugin = i_Peer == s_Untraced ? "/XmlPluginUntraced.so" : "/XmlPlugin.so";
    return {i_What, library, isPlugin ? m_Libraries + plugin : "", i_Amount, i_Document, i_Expressions};
}

std::vector<std::string> Comparison::run(const Task& i_Task, const std::vector<std::string>& i_Before) const
{
    std::vector<std::string> command = i_Before;
    command.push_back(m_Program);
    command.emplace_back("--child");
    const std::vector<std::string> arguments = toArguments(i_Task);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runProgram(command, m_Extent.limit);
}

// --- Expressions on a document in memory ----------------------------------------------------------

void Comparison::compareAnswers(const std::vector<std::string>& i_Peers, const std::string& i_Document,
                                const std::vector<std::string>& i_Expressions) const
{
    std::vector<std::string> expected;
    for (const std::string& peer : i_Peers)
    {
        const std::vector<std::string> lines = run(task("answers", peer, i_Document, i_Expressions, 0));
        if (expected.empty())
        {
            expected = lines;
        }
        if (lines.size() != i_Expressions.size())
        {
            throw std::runtime_error(peer + " does not answer");
        }
        for (std::size_t i = 0; i < lines.size(); ++i)
        {
            if (lines[i] != expected[i])
            {
                throw std::runtime_error(peer + " answers " + i_Expressions[i] + " with " + lines[i] + ", " +
                                         i_Peers.front() + " with " + expected[i]);
            }
        }
    }
}

void Comparison::measureExpressions(const std::string& i_Part, const std::vector<std::string>& i_Peers,
                                    const std::string& i_Document, const std::vector<std::string>& i_Expressions)
{
    compareAnswers(i_Peers, i_Document, i_Expressions);
    for (int round = 0; round < m_Extent.rounds; ++round)
    {
        for (const std::string& peer : i_Peers)
        {
            const std::vector<std::string> lines =
                run(task("warm", peer, i_Document, i_Expressions, m_Extent.seconds), s_KeepingMemory);
            for (std::size_t i = 0; i < lines.size(); ++i)
            {
                const std::vector<double> times = numbers(lines[i]);
                if (times.size() != 2)
                {
                    continue;
                }
                m_Results.add(i_Part, i_Expressions[i], peer, "delivered", times[0]);
                m_Results.add(i_Part, i_Expressions[i], peer, "evaluated", times[1]);
            }
        }
    }
}

void Comparison::warm()
{
    writeDocument(path("warm"), Shape::Config, {m_Extent.elements, 0});
    measureExpressions("warm", chosen(s_Engines), path("warm"), s_Paths);
    m_Results.print("warm", "delivered", "pointer-walk", 1e3, "microseconds");
    m_Results.print("warm", "evaluated", "pointer-walk", 1e3, "microseconds");
}

void Comparison::scalar()
{
    writeDocument(path("scalar"), Shape::Config, {10, 0});
    measureExpressions("scalar", chosen(s_FullEngines), path("scalar"), s_Scalars);
    m_Results.print("scalar", "delivered", "pugixml", 1, "nanoseconds");
}

// --- Documents that are read -----------------------------------------------------------------------

void Comparison::measureOnce(const std::string& i_Part, const std::string& i_Row, const Task& i_Task,
                             const std::string& i_Peer, const std::vector<std::string>& i_Metrics, double i_Divisor)
{
    const std::vector<std::string> lines = run(i_Task);
    if (lines.empty())
    {
        std::printf("%s, %s: %s needs more than %d s\n", i_Part.c_str(), i_Row.c_str(), i_Peer.c_str(), m_Extent.limit);
        return;
    }
    const std::vector<double> values = numbers(lines.front());
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        m_Results.add(i_Part, i_Row, i_Peer, i_Metrics.at(i), values[i] / i_Divisor);
    }
}

/// Load, query and unload of one document by one peer, in one process of each kind.
void Comparison::coldPeer(const std::string& i_Row, const std::string& i_Peer, const std::string& i_Query,
                          std::size_t i_Megabytes)
{
    const bool isLarge = i_Megabytes >= s_LargeDocument;
    const bool isSlow = i_Peer == s_Slow;
    const double runs = isLarge ? 2 : i_Megabytes >= s_LargeDocument / 8 ? (isSlow ? 1 : 3) : 9;
    const auto measure = [&](const char* i_What, const char* i_Part)
    {
        supplyMemoryFor(path("cold"));
        measureOnce(i_Part, i_Row, task(i_What, i_Peer, path("cold"), {i_Query}, runs), i_Peer,
                    {"time", "with loading"}, 1);
    };
    measure("fresh", "cold, fresh process");
    if (!isLarge || !isSlow)
    {
        measure("cold", "cold, long-lived process");
    }
    if (i_Peer == s_Plugin && !isLarge)
    {
        measure("unheld", "cold, long-lived process, library not held");
    }
}

void Comparison::coldShape(const ShapeRow& i_Shape, std::size_t i_Megabytes)
{
    const bool isLarge = i_Megabytes >= s_LargeDocument;
    const std::string document = path("cold");
    writeDocument(document, i_Shape.shape, {0, i_Megabytes * s_Megabyte});
    // Among large documents the slow one answers unseen, and there is one round: minutes would pass otherwise.
    std::vector<std::string> asked = chosen(s_FullEngines);
    if (isLarge)
    {
        std::erase(asked, s_Slow);
    }
    compareAnswers(asked, document, {i_Shape.query});
    const std::string row = i_Shape.name + ", " + std::to_string(i_Megabytes) + " MB";
    for (int round = 0; round < (isLarge ? 1 : m_Extent.rounds); ++round)
    {
        for (const std::string& peer : chosen(s_Readers))
        {
            coldPeer(row, peer, i_Shape.query, i_Megabytes);
        }
    }
    std::filesystem::remove(document);
}

void Comparison::cold()
{
    for (const std::size_t megabytes : m_Extent.megabytes)
    {
        for (const ShapeRow& shape : s_Shapes)
        {
            if (m_Extent.shapes.empty() ||
                std::find(m_Extent.shapes.begin(), m_Extent.shapes.end(), shape.name) != m_Extent.shapes.end())
            {
                coldShape(shape, megabytes);
            }
        }
    }
    m_Results.print("cold, long-lived process", "time", s_Floor, 1e6, "milliseconds");
    m_Results.print("cold, long-lived process, library not held", "time", "", 1e6, "milliseconds");
    m_Results.print("cold, fresh process", "time", s_Floor, 1e6, "milliseconds");
    m_Results.print("cold, fresh process", "with loading", s_Floor, 1e6, "milliseconds");
}

void Comparison::small()
{
    const std::string document = path("small");
    writeDocument(document, Shape::Config, {0, 1000});
    for (int number = 0; number < s_SmallDocuments; ++number)
    {
        std::filesystem::copy_file(document, document + "." + std::to_string(number),
                                   std::filesystem::copy_options::overwrite_existing);
    }
    const std::string query = "/root/group/item[3]/@id";
    compareAnswers(chosen(s_FullEngines), document, {query});
    for (int round = 0; round < m_Extent.rounds; ++round)
    {
        for (const std::string& peer : chosen(s_Readers))
        {
            measureOnce("small", "1 KB, second and later files",
                        task("small", peer, document, {query}, s_SmallDocuments), peer, {"time"}, 1);
        }
    }
    m_Results.print("small", "time", s_Floor, 1e3, "microseconds");
    for (int number = 0; number < s_SmallDocuments; ++number)
    {
        std::filesystem::remove(document + "." + std::to_string(number));
    }
}

void Comparison::memory()
{
    const std::string document = path("memory");
    const DocumentFacts facts = writeDocument(document, Shape::Config, {0, 16 * s_Megabyte});
    for (const std::string& peer : chosen(s_Readers))
    {
        measureOnce("memory", "config, 16 MB", task("memory", peer, document, {s_Shapes.front().query}, 0), peer,
                    {"bytes per byte"}, static_cast<double>(facts.bytes));
    }
    m_Results.print("memory", "bytes per byte", "", 1, "growth of the peak of the resident memory");
    std::filesystem::remove(document);
}

// --- Growth ------------------------------------------------------------------------------------------

void Comparison::growthOf(const std::string& i_Name, Shape i_Shape, const std::vector<std::string>& i_Expressions)
{
    const std::string document = path("growth");
    for (std::size_t elements = m_Extent.elements / 8; elements <= m_Extent.elements; elements *= 2)
    {
        const DocumentFacts facts = writeDocument(document, i_Shape, {elements, 0});
        std::vector<std::string> expressions = i_Expressions;
        for (std::string& expression : expressions)
        {
            if (const std::size_t place = expression.find("HALF"); place != std::string::npos)
            {
                expression.replace(place, 4, std::to_string(elements / 2));
            }
        }
        for (int round = 0; round < m_Extent.rounds; ++round)
        {
            const std::vector<std::string> lines =
                run(task("warm", s_Plugin, document, expressions, m_Extent.seconds / 2), s_KeepingMemory);
            for (std::size_t i = 0; i < lines.size(); ++i)
            {
                if (const std::vector<double> times = numbers(lines[i]); times.size() == 2)
                {
                    m_Results.add("growth", i_Name + ": " + i_Expressions[i], std::to_string(elements), "time",
                                  times[0] / static_cast<double>(facts.elements));
                }
            }
        }
    }
}

void Comparison::growth()
{
    growthOf("config", Shape::Config, s_Paths);
    growthOf("wide", Shape::Wide,
             {"/root/row[HALF]/@n", "/root/row[position()=HALF]/@n", "/root/row[last()]/@n",
              "/root/row[position()>HALF]/@n", "/root/row[position() mod 2 = 1]/@n"});
    growthOf("nests of 60", Shape::Blocks, {"//a//b//c", "count(//a//b//c)"});
    growthOf("one nest", Shape::Chain, {"//a//b//c", "count(//a//b//c)"});
    m_Results.print("growth", "time", "", 1, "nanoseconds per element");
}

// --- Tracing -----------------------------------------------------------------------------------------

/// Instructions of a process, counted by callgrind.
double Comparison::instructions(const std::string& i_Peer, const std::string& i_Document,
                                const std::string& i_Expression, int i_Runs) const
{
    const std::string file = m_Folder + "/callgrind.out";
    run(task("repeat", i_Peer, i_Document, {i_Expression}, i_Runs),
        {"valgrind", "--tool=callgrind", "-q", "--callgrind-out-file=" + file});
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
    {
        if (line.starts_with("summary:") || line.starts_with("totals:"))
        {
            return numbers(line.substr(line.find(':') + 1)).at(0);
        }
    }
    throw std::runtime_error("callgrind left no sum");
}

void Comparison::trace()
{
    const std::string document = path("trace");
    writeDocument(document, Shape::Config, {2000, 0});
    const std::vector<std::string> expressions = {
        "//item/@id", "//item[@id='x500']/@name", "//item[position()=2]/@id", "count(//item)",
        "1+2*3",      "concat('a','b','c')"};
    measureExpressions("trace", {s_Plugin, s_Untraced}, document, expressions);
    for (const std::string& expression : expressions)
    {
        for (const std::string& peer : {s_Plugin, s_Untraced})
        {
            constexpr int runs = 20;
            const double all = instructions(peer, document, expression, runs);
            const double one = instructions(peer, document, expression, 0);
            m_Results.add("trace", expression, peer, "instructions", (all - one) / runs);
        }
    }
    m_Results.print("trace", "instructions", s_Untraced, 1, "instructions a query");
    m_Results.print("trace", "delivered", s_Untraced, 1e3, "microseconds");
}
