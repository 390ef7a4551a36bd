#pragma once

#include "Documents.h"
#include "base/String.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class Node;

/// Shared by the suites: documents, trees, and the check of a result before it is timed.

/// If \p i_IsTrue is false, ends the program with a line that says what is wrong.
void require(bool i_IsTrue, std::string_view i_What);

/// Converts ASCII text.
String wide(std::string_view i_Text);

/// The path of a document, which is written on first use and removed at the end of the program.
const String& documentFile(Shape i_Shape, DocumentSize i_Size);
/// The size of that document.
DocumentFacts documentFacts(Shape i_Shape, DocumentSize i_Size);
/// The tree of that document, built once and kept.
Node& documentTree(Shape i_Shape, DocumentSize i_Size);
/// A new tree of it.
std::unique_ptr<Node> parseDocument(Shape i_Shape, DocumentSize i_Size);

/// The number of elements that a walk over the tree finds.
std::size_t countElements(const Node& i_Root);

/// The only value of an expression on a tree.
std::string valueOf(const char* i_Expression, Node* i_pRoot);
