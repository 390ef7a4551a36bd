// Carries the headers that all test programs share in compiled form; see the list of precompiled headers.
