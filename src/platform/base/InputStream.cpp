#include "base/InputStream.h"

InputStream::~InputStream() = default;
