// The side-by-side comparison of the plug-in with other XML libraries. bench/README.md tells how to use it.

#include "Child.h"
#include "Comparison.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>

namespace
{

struct Options
{
    Extent extent;
    std::string json;
    std::map<std::string, bool> parts;
};

const std::vector<std::pair<std::string, std::string>> s_Parts = {
    {"warm", "path queries on a document in memory"},
    {"scalar", "expressions without a document's nodes"},
    {"small", "1 KB documents, second and later of a process"},
    {"memory", "growth of the resident memory with a document"},
    {"cold", "load, one query and free, in a long-lived process and in a fresh one"},
    {"growth", "time per element of documents of growing size (plug-in only)"},
    {"trace", "instructions with and without the trace statements (plug-in only, needs valgrind)"},
};

void declare(CLI::App& io_App, Options& io_Options, bool& io_IsQuick)
{
    for (const auto& [name, text] : s_Parts)
    {
        io_App.add_flag("--" + name, io_Options.parts[name], text);
    }
    io_App.add_flag("--quick", io_IsQuick, "one round, short samples, documents of 4 MB");
    io_App.add_option("--elements", io_Options.extent.elements, "elements of the document for warm queries");
    io_App.add_option("--mb", io_Options.extent.megabytes, "sizes of the documents that are read cold");
    io_App.add_option("--shapes", io_Options.extent.shapes, "of these documents: config wide deep text");
    io_App.add_option("--rounds", io_Options.extent.rounds, "processes for each peer and measurement");
    io_App.add_option("--seconds", io_Options.extent.seconds, "for each expression in one process");
    io_App.add_option("--limit", io_Options.extent.limit, "seconds that one process may take");
    io_App.add_option("--peers", io_Options.extent.peers, "pointer-walk plugin xerces libxml2 xalan pugixml");
    io_App.add_option("--json", io_Options.json, "file for all values");
}

void runParts(const std::string& i_Program, Options& io_Options)
{
    std::string folder = (std::filesystem::temp_directory_path() / "peers-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
    {
        throw std::runtime_error("no folder for the documents");
    }
    const struct Removal
    {
        std::string path;
        ~Removal()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    } removal{folder};
    Results results;
    Comparison comparison(i_Program, folder, io_Options.extent, results);
    const std::map<std::string, void (Comparison::*)()> parts = {
        {"warm", &Comparison::warm},   {"scalar", &Comparison::scalar}, {"cold", &Comparison::cold},
        {"small", &Comparison::small}, {"memory", &Comparison::memory}, {"growth", &Comparison::growth},
        {"trace", &Comparison::trace},
    };
    bool isAnyChosen = false;
    for (const auto& [name, isChosen] : io_Options.parts)
    {
        isAnyChosen = isAnyChosen || isChosen;
    }
    for (const auto& [name, text] : s_Parts)
    {
        if (io_Options.parts[name] || !isAnyChosen)
        {
            (comparison.*parts.at(name))();
            // After each part, so that a run that is broken off leaves what it has.
            if (!io_Options.json.empty())
            {
                std::ofstream(io_Options.json) << results.toJson();
            }
        }
    }
}

} // namespace

int main(int i_Count, char** i_Arguments)
{
    try
    {
        const std::vector<std::string> arguments(i_Arguments + 1, i_Arguments + i_Count);
        if (!arguments.empty() && arguments.front() == "--child")
        {
            return runChild(toTask({arguments.begin() + 1, arguments.end()}));
        }
        Options options;
        bool isQuick = false;
        CLI::App app("Compares the plug-in with other XML libraries. Without a part, all parts.");
        declare(app, options, isQuick);
        CLI11_PARSE(app, i_Count, i_Arguments);
        if (isQuick)
        {
            if (app.count("--rounds") == 0)
            {
                options.extent.rounds = 1;
            }
            if (app.count("--seconds") == 0)
            {
                options.extent.seconds = 0.05;
            }
            if (app.count("--mb") == 0)
            {
                options.extent.megabytes = {4};
            }
        }
        runParts(std::filesystem::canonical("/proc/self/exe").string(), options);
        return EXIT_SUCCESS;
    }
    catch (const std::exception& error)
    {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
