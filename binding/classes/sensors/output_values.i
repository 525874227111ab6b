// The values of camera outputs: forty classes from one pattern.

%include "sensors/output_value_types.i"

%{
#include <stdexcept>
%}

ZOR_SEQUENCE_GUARD(zorOSG::NeoCameraOutputValue::__getitem__)

%include <zorOSG/NeoCameraOutputValue.h>
// The constructors that every aggregate has stand here for their place in the order of functions.
%extend zorOSG::NeoCameraOutputValue {
  NeoCameraOutputValue() { return new zorOSG::NeoCameraOutputValue< T,N >(); }
  NeoCameraOutputValue(NeoCameraOutputValue< T,N > const& other) { return new zorOSG::NeoCameraOutputValue< T,N >(other); }
  size_t __len__() const {
    (void)$self;
    return N;
  }
  T __getitem__(size_t i) const {
    if (i >= N) throw std::out_of_range("index");
    return $self->channels[i];
  }
}

%define ZOR_OUTPUT_VALUE(SUFFIX, CHANNELS, ELEMENT)
%template(NeoCameraOutputValue ## CHANNELS ## SUFFIX) zorOSG::NeoCameraOutputValue< ELEMENT, CHANNELS >;
%enddef
ZOR_FOR_OUTPUT_VALUES(ZOR_OUTPUT_VALUE)
