%module(directors="1", threads="1") callcost

// The module of the call benchmark, generated in every respect like the project's own.
%include "shared/toolkit.i"
%include <std_vector.i>

%{
#include "Probe.h"
%}

%feature("director") callcost::Listener;
%template(Series) std::vector<callcost::Value>;
%include "../../../benchmarks/calls/Probe.h"
