# The tests of compiling expressions and of delivering their values.
set(COMPILATION_TESTS
  XPathElementsTest.cpp
  XPathEngineTest.cpp
  XPathExpressionsParserTest.cpp
  XPathPrinterTest.cpp
  XPathSmallVectorTest.cpp
  XPathTokenizerTest.cpp
  XmlCacheTest.cpp
  XmlPluginTest.cpp
  XmlValueTest.cpp
)
