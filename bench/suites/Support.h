#pragma once

#include "Documents.h"
#include "base/String.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class Node;

/// What the suites share: documents, trees, and the check of a result before it is timed.

/// Ends the program with a line that tells what was wrong, unless \p i_IsTrue.
void require(bool i_IsTrue, std::string_view i_What);

/// ASCII only.
String wide(std::string_view i_Text);

/// The file of a document, written on first use and removed at the end of the program.
const String& documentFile(Shape i_Shape, DocumentSize i_Size);
/// How large it is.
DocumentFacts documentFacts(Shape i_Shape, DocumentSize i_Size);
/// The tree of that document, made once and kept.
Node& documentTree(Shape i_Shape, DocumentSize i_Size);
/// A new tree of it.
std::unique_ptr<Node> parseDocument(Shape i_Shape, DocumentSize i_Size);

/// Number of elements that a walk over the tree finds.
std::size_t countElements(const Node& i_Root);

/// The one value of an expression on a tree.
std::string valueOf(const char* i_Expression, Node* i_pRoot);
