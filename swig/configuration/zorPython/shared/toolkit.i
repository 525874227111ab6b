// What the modules of the toolkit's own namespaces need besides the common part.

%include "shared/common.i"
%include "shared/directors.i"
%include "shared/referenced.i"
%include "shared/vectors.i"
%include "shared/lists.i"

// Streams are no business of Python's: values print themselves.
%ignore zor::operator<<;
%ignore zorRender::operator<<;
%ignore zorCollide::operator<<;
