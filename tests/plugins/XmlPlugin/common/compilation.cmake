# The tests of compiling expressions and of delivering their values.
set(COMPILATION_TESTS
  XPathEngineTest.cpp
  XPathExpressionsParserTest.cpp
  XPathPrinterTest.cpp
  XPathTokenizerTest.cpp
  XmlCacheTest.cpp
  XmlPluginTest.cpp
  XmlValueTest.cpp
)
