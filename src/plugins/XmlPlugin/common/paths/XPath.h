#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "paths/XPathStep.h"
#include "values/XPathExpression.h"
#include "values/XPathMemory.h"
#include "values/XPathOutputList.h"

#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

class Node;

namespace XmlPlugin
{

class XPathOutputCollector;
struct XPathPlan;

/// Answers questions about the text of one union branch.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathTest.cpp
class XPathStepSplitter
{
public:
    /// Number of "/" in the branch, where "//" counts once. This is the index of the last step.
    static unsigned getStepCount(const String& i_Branch) noexcept;
    /// Builds step number \p i_Index of the branch: 0 is the root step, and a later step without a successor is the
    /// leaf step. Returns -103 if there is no such step, otherwise the result of `XPathStep::create`. The branch and \p
    /// io_Memory must outlive the step.
    static TErrorCode getStep(const String& i_Branch, unsigned i_Index, std::pmr::memory_resource& io_Memory,
                              XPathStepPointer& o_pStep);
};

/// One branch of a union, for the general code: its text and its steps, which are built once. A step that cannot be
/// built keeps its error code, for a walk that reaches it.
///
/// Ownership: the steps are in the memory of the path and refer to its text.
struct XPathBranch
{
    struct Slot
    {
        XPathStepPointer m_pStep; ///< null if m_Code is not 0
        TErrorCode m_Code = 0;
        bool m_MayRepeat = false; ///< a walk may reach the same node at this step several times
    };

    /// \p i_Written: the branch as written, without white space around it and without a single "/" in front.
    XPathBranch(std::wstring_view i_Written, std::pmr::memory_resource& io_Memory)
        : m_Written(i_Written), m_Steps(&io_Memory)
    {
    }

    void buildSteps();
    /// The text, including a last step that is not written. The steps must have been built.
    String text() const;

    std::wstring_view m_Written;
    bool m_HasEnd = false;    ///< the last step is not written
    unsigned m_StepCount = 0; ///< index of the last step
    std::pmr::vector<Slot> m_Steps;
};

/// One location path, evaluated on a tree. The general code splits it into union branches and these into steps, walks
/// the tree once per branch, and puts the records in document order. For a plain path, quick code reads the text as a
/// plan; branches are created only if it gives up.
///
/// Ownership: owns its branches and steps, which are inside the object as long as there is room. The caller owns the
/// records.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathTest.cpp
class XPath
{
public:
    explicit XPath(String i_XPath);
    /// Same, for a text that the caller keeps alive.
    explicit XPath(XPathExpression::Lent i_XPath);
    ~XPath();
    XPath(const XPath&) = delete;
    XPath& operator=(const XPath&) = delete;

    /// Splits the path into branches for the general code. Done once, when the general code is first needed.
    void splitXPath();
    /// Replaces the contents of \p o_Output by what the path selects from \p i_pRoot, in ascending key order without
    /// equal keys. Returns 0, even if nothing is selected; -15006 if the first step of a branch is malformed; otherwise
    /// an error code of the walk. The output is empty after an error.
    TErrorCode getValues(Node* i_pRoot, XPathOutputList& o_Output);
    /// Same, but the first branch continues at its step \p i_Position with \p i_pNode, as if its walk had just selected
    /// that node there.
    TErrorCode getValuesFrom(Node* i_pRoot, Node* i_pNode, unsigned i_Position, XPathOutputList& o_Output);

    /// Counts the records that `getValues` would output, without creating them. Returns false, and counts nothing, if
    /// they must be created to know their number.
    bool countValues(Node* i_pRoot, std::size_t& o_Count);

    /// Whether the path is plain and quick code may answer it.
    bool isQuick() const noexcept { return m_pPlan != nullptr; }
    /// Empty before the general code is first needed.
    const std::pmr::vector<XPathBranch>& branches() const noexcept { return m_Branches; }

private:
    /// Where a branch begins: at the root, or at a later step with a node.
    struct Start
    {
        Node* m_pNode;
        unsigned m_Position;
    };

    void read();
    TErrorCode collect(Start i_First, Start i_Others, XPathOutputList& io_Records);
    TErrorCode evaluateBranch(XPathBranch& io_Branch, Start i_Start, XPathOutputCollector& io_Output);

    /// Bytes for the branches, steps and predicates of a usual path.
    static constexpr std::size_t s_UsualSize = 1536;

    const String m_OwnText; ///< empty if the caller keeps the text
    const std::wstring_view m_XPath;
    alignas(std::max_align_t) std::byte m_Usual[s_UsualSize];
    std::pmr::monotonic_buffer_resource m_Memory{m_Usual, s_UsualSize};
    std::pmr::vector<XPathBranch> m_Branches{&m_Memory};
    bool m_IsSplit = false;
    XPathMemory m_PlanMemory;
    const XPathPlan* m_pPlan = nullptr;
};

} // namespace XmlPlugin
