# Writes a C++ source that holds the bytes of a file: cmake -DFILE=... -DNAME=... -DOUTPUT=... -P EmbedText.cmake
# It defines `extern const unsigned char NAME[]` and `extern const std::size_t NAMESize`.
file(READ "${FILE}" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
file(WRITE "${OUTPUT}" "#include <cstddef>
extern const unsigned char ${NAME}[];
extern const std::size_t ${NAME}Size;
const unsigned char ${NAME}[] = {\n${bytes}};
const std::size_t ${NAME}Size = sizeof ${NAME};\n")
