// The pixel types of camera outputs: every channel element type with 1 to 4 channels, in the order of the module's
// functions. MACRO takes the name's suffix, the number of channels and the element type.

%define ZOR_FOR_CHANNELS(MACRO, SUFFIX, T)
MACRO(SUFFIX, 1, T)
MACRO(SUFFIX, 2, T)
MACRO(SUFFIX, 3, T)
MACRO(SUFFIX, 4, T)
%enddef

%define ZOR_FOR_OUTPUT_VALUES(MACRO)
ZOR_FOR_CHANNELS(MACRO, I8, int8_t)
ZOR_FOR_CHANNELS(MACRO, U8, uint8_t)
ZOR_FOR_CHANNELS(MACRO, I16, int16_t)
ZOR_FOR_CHANNELS(MACRO, U16, uint16_t)
ZOR_FOR_CHANNELS(MACRO, I32, int32_t)
ZOR_FOR_CHANNELS(MACRO, U32, uint32_t)
ZOR_FOR_CHANNELS(MACRO, F32, float)
ZOR_FOR_CHANNELS(MACRO, I64, int64_t)
ZOR_FOR_CHANNELS(MACRO, U64, uint64_t)
ZOR_FOR_CHANNELS(MACRO, F64, double)
%enddef
