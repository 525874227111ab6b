// The values of camera outputs: forty classes from one pattern.

%include "sensors/output_value_types.i"

%{
#include <stdexcept>

template <class T, int N>
static T zorChannel(zorOSG::NeoCameraOutputValue<T, N> const& value, std::size_t i) {
  if (i >= N) throw std::out_of_range("index");
  return value.channels[i];
}
%}

ZOR_SEQUENCE_GUARD(zorOSG::NeoCameraOutputValue::__getitem__)

%include <zorOSG/NeoCameraOutputValue.h>

// The constructors that every aggregate has stand here for their place in the order of functions.
%define ZOR_OUTPUT_VALUE(SUFFIX, CHANNELS, ELEMENT)
%extend zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS > {
  NeoCameraOutputValue() { return new zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS >(); }
  NeoCameraOutputValue(zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS > const& other) {
    return new zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS >(other);
  }
  size_t __len__() const {
    (void)$self;
    return CHANNELS;
  }
  ELEMENT __getitem__(size_t i) const { return zorChannel(*$self, i); }
}
%template(NeoCameraOutputValue ## CHANNELS ## SUFFIX) zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS >;
%enddef
ZOR_FOR_OUTPUT_VALUES(ZOR_OUTPUT_VALUE)
