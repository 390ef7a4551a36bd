#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Support of the tests: documents written for other programs, and what the plug-in and `xmllint`
/// answer about them.

enum class Document
{
    Wayland, ///< the Wayland protocol: some 700 elements, four levels deep
    Vulkan,  ///< the Vulkan registry: some 35,000 elements
};

/// Path of the document.
/// Throws std::runtime_error that names the package when it is not installed.
std::string pathOf(Document i_Document);

/// What a query answers: its values in order, or why it has none.
struct Answers
{
    std::vector<std::string> values; ///< UTF-8
    std::string failure;             ///< empty when the query was evaluated

    bool operator==(const Answers&) const = default;
};

/// The values with " | " between, "(none)" for no value, the failure when there is one.
std::string print(const Answers& i_Answers);

/// What the plug-in answers; a failure reads "error CODE".
Answers askPlugin(const std::string& i_Path, const std::string& i_Expression);

/// What `xmllint --xpath` answers; a failure reads as its error message does.
/// Throws std::runtime_error that names the package when the program cannot be started.
Answers askXmlLint(const std::string& i_Path, const std::string& i_Expression);

/// The values in what `xmllint --xpath` printed. Attributes, ` name="value"` each, give their
/// values without references; all else is one value, without the line feed at its end.
std::vector<std::string> readXmlLintOutput(std::string_view i_Output);
