# Writes the bytes of INPUT as the array kzb::kSampleSjis into OUTPUT.
#   cmake -DINPUT=file -DOUTPUT=file.cpp -P embed.cmake
file(READ ${INPUT} hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(LENGTH "${hex}" digits)
math(EXPR size "${digits} / 2")
get_filename_component(name ${INPUT} NAME)
file(WRITE ${OUTPUT} "// Generated from ${name} by tools/kzb/embed.cmake: do not edit.\n"
  "#include <cstddef>\n"
  "namespace kzb {\n"
  "extern const unsigned char kSampleSjis[] = {${bytes}0};\n"
  "extern const std::size_t kSampleSjisSize = ${size};\n"
  "}  // namespace kzb\n")
