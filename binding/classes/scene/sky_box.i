// A sky as a node. Its proxies count without functions of its own.
%feature("ref") zorOSG::SkyBox "$this->ref();"
%include <zorOSG/SkyBox.h>
%extend zorOSG::SkyBox {
  ~SkyBox() { $self->unref(); }
}
