# The tests of location paths and predicates.
set(PATH_TESTS
  XPathDirectBranchTest.cpp
  XPathDirectWalkTest.cpp
  XPathOutputCollectorTest.cpp
  XPathOutputListTest.cpp
  XPathPredicateTest.cpp
  XPathStepTest.cpp
  XPathTest.cpp
  XPathWalkReferenceTest.cpp
  XPathWalkTest.cpp
)
