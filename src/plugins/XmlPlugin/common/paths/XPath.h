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
    /// Number of "/" in the branch, "//" counting once: the index of the last step.
    static unsigned getStepCount(const String& i_Branch) noexcept;
    /// Builds step number \p i_Index of the branch: 0 is the root step, one without a step behind
    /// it the leaf step. -103 when there is no such step, else as `XPathStep::create`. The branch and
    /// \p io_Memory outlive the step.
    static TErrorCode getStep(const String& i_Branch, unsigned i_Index, std::pmr::memory_resource& io_Memory,
                              XPathStepPointer& o_pStep);
};

/// One branch of a union for the general code: its text and its steps, built once. A step that cannot be built keeps
/// its code for the walk that reaches it.
///
/// Ownership: the steps are in the memory of the path, at whose text they look.
struct XPathBranch
{
    struct Slot
    {
        XPathStepPointer m_pStep; ///< null when m_Code is not 0
        TErrorCode m_Code = 0;
        bool m_MayRepeat = false; ///< a walk may come to one node at this step several times
    };

    /// \p i_Written: the branch as written, without white space around it and a single "/" in front.
    XPathBranch(std::wstring_view i_Written, std::pmr::memory_resource& io_Memory)
        : m_Written(i_Written), m_Steps(&io_Memory)
    {
    }

    void buildSteps();
    /// Of a branch whose steps are built: with the step that is not written, where there is one.
    String text() const;

    std::wstring_view m_Written;
    bool m_HasEnd = false;    ///< the last step is not written
    unsigned m_StepCount = 0; ///< index of the last step
    std::pmr::vector<Slot> m_Steps;
};

/// One location path, evaluated on a tree: split into union branches and these into steps, each
/// branch walked over the tree, the records put in document order. Quick code does so for a plain path: it reads the
/// text as a plan, and branches are made only where it gives up.
///
/// Ownership: owns its branches and steps, which lie in it as long as there is room. Records are the caller's.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathTest.cpp
class XPath
{
public:
    explicit XPath(String i_XPath);
    /// The same of a text that is lent to it.
    explicit XPath(XPathExpression::Lent i_XPath);
    ~XPath();
    XPath(const XPath&) = delete;
    XPath& operator=(const XPath&) = delete;

    /// Cuts the path into branches for the general code; done when that first answers, and once only.
    void splitXPath();
    /// Replaces the content of \p o_Output by what the
    /// path selects from \p i_pRoot, in ascending key order without equal keys. 0, also without a
    /// node; -15006 when a branch's first step is malformed; a code of the walk otherwise, and
    /// then the output is empty.
    TErrorCode getValues(Node* i_pRoot, XPathOutputList& o_Output);
    /// The same, but the first branch is taken up at its step \p i_Position with \p i_pNode, as if
    /// its walk had just selected that node there.
    TErrorCode getValuesFrom(Node* i_pRoot, Node* i_pNode, unsigned i_Position, XPathOutputList& o_Output);

    /// The number of records that `getValues` would put out, without making them. False, with
    /// nothing counted, where they must be made to know their number.
    bool countValues(Node* i_pRoot, std::size_t& o_Count);

    /// Whether the path is plain, and quick code may answer it.
    bool isQuick() const noexcept { return m_pPlan != nullptr; }
    /// None before the general code first answers.
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

    const String m_OwnText; ///< empty where the text is lent
    const std::wstring_view m_XPath;
    alignas(std::max_align_t) std::byte m_Usual[s_UsualSize];
    std::pmr::monotonic_buffer_resource m_Memory{m_Usual, s_UsualSize};
    std::pmr::vector<XPathBranch> m_Branches{&m_Memory};
    bool m_IsSplit = false;
    XPathMemory m_PlanMemory;
    const XPathPlan* m_pPlan = nullptr;
};

} // namespace XmlPlugin
