#include "Child.h"

#include "Clock.h"
#include "Peer.h"
#include "SystemMemory.h"

#include <cstdint>
#include <dlfcn.h>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace
{

constexpr std::size_t s_LeastSamples = 5;
constexpr double s_LongTime = 5e8;    ///< nanoseconds in all, after which fewer samples do
constexpr double s_SampleTime = 50e3; ///< nanoseconds; shorter operations are timed several at once

std::unique_ptr<Peer> openPeer(const Task& i_Task)
{
    void* pLibrary = dlopen(i_Task.library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (pLibrary == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    const auto pCreate = reinterpret_cast<CreatePeer>(dlsym(pLibrary, "createPeer"));
    if (pCreate == nullptr)
    {
        throw std::runtime_error(dlerror());
    }
    return std::unique_ptr<Peer>(pCreate(i_Task.argument.c_str()));
}

std::uint64_t hashOf(const std::vector<std::string>& i_Values)
{
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const std::string& value : i_Values)
    {
        for (const char* pCharacter = value.c_str();; ++pCharacter)
        {
            hash = (hash ^ static_cast<unsigned char>(*pCharacter)) * 0x100000001B3U;
            if (*pCharacter == '\0')
            {
                break;
            }
        }
    }
    return hash;
}

double timeOf(const std::function<void()>& i_Operation)
{
    const double begin = processorTime();
    i_Operation();
    return processorTime() - begin;
}

/// Median time of an operation that has run before.
double medianTime(const std::function<void()>& i_Operation, double i_Seconds)
{
    const double once = timeOf(i_Operation);
    const auto batch = static_cast<std::size_t>(once < s_SampleTime ? s_SampleTime / (once + 20) + 1 : 1);
    std::vector<double> samples;
    for (double total = 0; total < i_Seconds * 1e9 || (samples.size() < s_LeastSamples && total < s_LongTime);)
    {
        const double taken = timeOf(
            [&]
            {
                for (std::size_t i = 0; i < batch; ++i)
                {
                    i_Operation();
                }
            });
        total += taken;
        samples.push_back(taken / static_cast<double>(batch));
    }
    return median(samples);
}

void answers(Peer& io_Peer, const Task& i_Task)
{
    io_Peer.load(i_Task.document);
    for (const std::string& expression : i_Task.expressions)
    {
        try
        {
            io_Peer.prepare(expression);
            const std::size_t count = io_Peer.query();
            std::cout << count << ' ' << hashOf(io_Peer.values()) << '\n';
        }
        catch (const std::exception&)
        {
            std::cout << "none\n";
        }
    }
    io_Peer.unload();
}

void warm(Peer& io_Peer, const Task& i_Task)
{
    io_Peer.load(i_Task.document);
    for (const std::string& expression : i_Task.expressions)
    {
        try
        {
            io_Peer.prepare(expression);
            io_Peer.query();
            const double query = medianTime([&] { io_Peer.query(); }, i_Task.amount);
            io_Peer.evaluate();
            std::cout << query << ' ' << medianTime([&] { io_Peer.evaluate(); }, i_Task.amount) << std::endl;
        }
        catch (const std::exception&)
        {
            std::cout << "none" << std::endl;
        }
    }
    io_Peer.unload();
}

void loadQueryUnload(Peer& io_Peer, const Task& i_Task)
{
    io_Peer.load(i_Task.document);
    io_Peer.prepare(i_Task.expressions.front());
    io_Peer.query();
    io_Peer.unload();
}

void cold(Peer& io_Peer, const Task& i_Task, bool i_IsHeld)
{
    if (i_IsHeld)
    {
        io_Peer.holdLibrary();
    }
    loadQueryUnload(io_Peer, i_Task);
    std::vector<double> samples;
    for (int run = 0; run < static_cast<int>(i_Task.amount); ++run)
    {
        supplyMemoryFor(i_Task.document);
        samples.push_back(timeOf([&] { loadQueryUnload(io_Peer, i_Task); }));
    }
    std::cout << median(samples) << '\n';
}

/// The documents are copies that lie beside the one that is named: with ".0", ".1" and so on behind its name.
void small(Peer& io_Peer, const Task& i_Task)
{
    const auto documents = static_cast<int>(i_Task.amount);
    std::vector<double> samples;
    for (int number = 0; number < documents; ++number)
    {
        const std::string document = i_Task.document + "." + std::to_string(number);
        const double taken = timeOf(
            [&]
            {
                io_Peer.load(document);
                io_Peer.prepare(i_Task.expressions.front());
                io_Peer.query();
                io_Peer.forget();
            });
        if (number > 0)
        {
            samples.push_back(taken);
        }
    }
    // Peers that cannot free one document alone free all of them here; each bears its part.
    const double unload = timeOf([&] { io_Peer.unload(); });
    std::cout << median(samples) + unload / documents << '\n';
}

/// A value of /proc/self/status in bytes.
double memoryStatus(const std::string& i_Name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
    {
        double kilobytes = 0;
        if (word == i_Name + ":" && status >> kilobytes)
        {
            return kilobytes * 1024;
        }
    }
    throw std::runtime_error("no " + i_Name + " in /proc/self/status");
}

void memory(Peer& io_Peer, const Task& i_Task)
{
    io_Peer.holdLibrary();
    const double before = memoryStatus("VmRSS");
    io_Peer.load(i_Task.document);
    io_Peer.prepare(i_Task.expressions.front());
    io_Peer.query();
    std::cout << memoryStatus("VmHWM") - before << '\n';
    io_Peer.unload();
}

void repeat(Peer& io_Peer, const Task& i_Task)
{
    io_Peer.load(i_Task.document);
    io_Peer.prepare(i_Task.expressions.front());
    for (int run = 0; run <= static_cast<int>(i_Task.amount); ++run)
    {
        io_Peer.query();
    }
    io_Peer.unload();
}

void doTask(Peer& io_Peer, const Task& i_Task)
{
    if (i_Task.what != "fresh")
    {
        io_Peer.start();
    }
    if (i_Task.what == "answers")
    {
        answers(io_Peer, i_Task);
    }
    else if (i_Task.what == "warm")
    {
        warm(io_Peer, i_Task);
    }
    else if (i_Task.what == "cold" || i_Task.what == "unheld")
    {
        cold(io_Peer, i_Task, i_Task.what == "cold");
    }
    else if (i_Task.what == "small")
    {
        small(io_Peer, i_Task);
    }
    else if (i_Task.what == "memory")
    {
        memory(io_Peer, i_Task);
    }
    else if (i_Task.what == "repeat")
    {
        repeat(io_Peer, i_Task);
    }
    else if (i_Task.what == "fresh")
    {
        const double loaded = processorTime();
        io_Peer.start();
        loadQueryUnload(io_Peer, i_Task);
        const double end = processorTime();
        std::cout << end - loaded << ' ' << end << '\n';
    }
    else
    {
        throw std::runtime_error("no such task: " + i_Task.what);
    }
}

} // namespace

std::vector<std::string> toArguments(const Task& i_Task)
{
    std::vector<std::string> arguments = {i_Task.what, i_Task.library, i_Task.argument, i_Task.document,
                                          std::to_string(i_Task.amount)};
    arguments.insert(arguments.end(), i_Task.expressions.begin(), i_Task.expressions.end());
    return arguments;
}

Task toTask(const std::vector<std::string>& i_Arguments)
{
    if (i_Arguments.size() < 5)
    {
        throw std::runtime_error("a task has at least five arguments");
    }
    Task task{i_Arguments[0], i_Arguments[1], i_Arguments[2], std::stod(i_Arguments[4]), i_Arguments[3], {}};
    task.expressions.assign(i_Arguments.begin() + 5, i_Arguments.end());
    return task;
}

int runChild(const Task& i_Task)
{
    try
    {
        const std::unique_ptr<Peer> pPeer = openPeer(i_Task);
        doTask(*pPeer, i_Task);
        std::cout.flush();
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << i_Task.what << " with " << i_Task.library << ": " << error.what() << '\n';
        return 1;
    }
}
