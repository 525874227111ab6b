// Names of the toolkit's scalar types; the same for every module.
%include <stdint.i>

namespace zor {
typedef double Real;
typedef int64_t Int;
typedef uint64_t UInt;
typedef uint64_t Index;
typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef uint32_t UInt32;
typedef double TimeStamp;
typedef std::string String;
} // namespace zor
