# The tests of values, operators, functions and comparisons.
set(FUNCTION_TESTS
  ValueTracesTest.cpp
  XPathArgumentTest.cpp
  XPathBooleanFunctionsTest.cpp
  XPathContextFunctionsTest.cpp
  XPathExpressionTest.cpp
  XPathFunctionTest.cpp
  XPathLogicalEvaluatorTest.cpp
  XPathNumberFunctionsTest.cpp
  XPathNumericLimitsTest.cpp
  XPathOperatorFunctionsTest.cpp
  XPathOperatorTest.cpp
  XPathStringFunctionsTest.cpp
)
