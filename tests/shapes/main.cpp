#include "Shapes.h"
#include "support/TemporaryFolder.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

// Measures how time and memory grow with the size of one extreme shape: each shape at two sizes,
// the second twice the first, each in a process of its own. A table goes to standard output; the
// status is 1 when an answer was wrong.
//
//     shapes [NAME...]        all shapes, or those whose names begin so

namespace
{

struct Measured
{
    bool isRight = false;
    ShapeTimes times{};
    double megabytes = 0; ///< the highest use of memory of the process
};

bool writeDocument(const Shape& i_Shape, std::size_t i_Size, const std::string& i_File)
{
    std::ofstream stream(i_File, std::ios::binary | std::ios::trunc);
    i_Shape.document(stream, i_Size);
    stream.close();
    return !stream.fail();
}

[[noreturn]] void answerIn(int i_Pipe, const Shape& i_Shape, std::size_t i_Size, const std::string& i_File)
{
    int status = 1;
    try
    {
        const ShapeTimes times = ask(i_Shape, i_Size, i_File);
        status = write(i_Pipe, &times, sizeof times) == static_cast<ssize_t>(sizeof times) ? 0 : 1;
    }
    catch (const std::exception& exception)
    {
        std::cerr << exception.what() << '\n';
    }
    _exit(status);
}

Measured measure(const Shape& i_Shape, std::size_t i_Size, const std::string& i_File)
{
    Measured measured;
    int ends[2] = {};
    if (!writeDocument(i_Shape, i_Size, i_File) || pipe(ends) != 0)
    {
        return measured;
    }
    const pid_t child = fork();
    if (child == 0)
    {
        answerIn(ends[1], i_Shape, i_Size, i_File);
    }
    close(ends[1]);
    const bool isRead =
        read(ends[0], &measured.times, sizeof measured.times) == static_cast<ssize_t>(sizeof measured.times);
    close(ends[0]);
    int status = 0;
    struct rusage usage
    {
    };
    const bool isEnded = child > 0 && wait4(child, &status, 0, &usage) == child;
    measured.isRight = isRead && isEnded && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    measured.megabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    return measured;
}

bool isWanted(const Shape& i_Shape, int i_Count, char* const* i_pNames)
{
    return i_Count == 0 ||
           std::any_of(i_pNames, i_pNames + i_Count,
                       [&](const char* i_pName) { return std::string_view(i_Shape.name).starts_with(i_pName); });
}

/// The growth by doubling the size; in brackets where the times are too short to tell.
std::string growth(double i_Small, double i_Large, double i_Least)
{
    char text[32];
    std::snprintf(text, sizeof text, i_Large < i_Least ? "(%.1f)" : "%.1f", i_Large / std::max(i_Small, 1e-9));
    return text;
}

void printRow(const Shape& i_Shape, const Measured& i_Small, const Measured& i_Large, double i_BaseMegabytes)
{
    if (!i_Small.isRight || !i_Large.isRight)
    {
        std::printf("%-18s WRONG\n", i_Shape.name);
        return;
    }
    const double small = std::max(i_Small.megabytes - i_BaseMegabytes, 0.0);
    const double large = std::max(i_Large.megabytes - i_BaseMegabytes, 0.0);
    std::printf("%-18s %10zu %-10s %9.1f %7s %9.1f %7s %9.1f %7s\n", i_Shape.name, i_Shape.size, i_Shape.unit,
                i_Large.times.first * 1e3, growth(i_Small.times.first, i_Large.times.first, 0.02).c_str(),
                i_Large.times.second * 1e3, growth(i_Small.times.second, i_Large.times.second, 0.02).c_str(), large,
                growth(small, large, 4).c_str());
    std::fflush(stdout);
}

} // namespace

int main(int i_Count, char** i_pArguments)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("document.xml");
    const Shape& smallest =
        *std::find_if(shapes().begin(), shapes().end(),
                      [](const Shape& i_Shape) { return std::string_view(i_Shape.name) == "name"; });
    const double base = measure(smallest, 10, file).megabytes;
    std::printf("Each size and half of it; growth is what doubling the size multiplies by (in brackets: too little to\n"
                "tell). Memory is above the %.0f MiB of a process that asks for next to nothing.\n\n",
                base);
    std::printf("%-18s %10s %-10s %9s %7s %9s %7s %9s %7s\n", "shape", "size", "", "first ms", "growth", "again ms",
                "growth", "MiB", "growth");
    bool isRight = true;
    for (const Shape& shape : shapes())
    {
        if (!isWanted(shape, i_Count - 1, i_pArguments + 1))
        {
            continue;
        }
        const Measured half = measure(shape, shape.size / 2, file);
        const Measured whole = measure(shape, shape.size, file);
        printRow(shape, half, whole, base);
        isRight = isRight && half.isRight && whole.isRight;
    }
    return isRight ? 0 : 1;
}
