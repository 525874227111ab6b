%module(directors="1", threads="1", docstring="Objects that can be stored and restored.") zorStream

%{
#include "headers/zorStream.h"
%}

%include "shared/toolkit.i"
%include "shared/interpreter.i"

%nodefaultctor zorStream::Serializable;
%include <zorStream/Serializable.h>
