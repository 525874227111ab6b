// Vectors of camera output values, as the outputs fill them.

%define ZOR_OUTPUT_VECTOR(SUFFIX, CHANNELS, ELEMENT)
ZOR_STANDARD_VECTOR(NeoCameraOutputValue ## CHANNELS ## SUFFIX ## Vector,
                    zorOSG__NeoCameraOutputValueT_ ## ELEMENT ## _ ## CHANNELS ## _t,
                    %arg(zorOSG::NeoCameraOutputValue< ELEMENT,CHANNELS >))
%enddef
ZOR_FOR_OUTPUT_VALUES(ZOR_OUTPUT_VECTOR)
