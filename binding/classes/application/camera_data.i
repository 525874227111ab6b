// Pose and projection of a camera as a value. Its vectors come as copies: a script reads them from records that live
// no longer than the line.
%typemap(out) zor::Vec3* COPY {
  $result = SWIG_NewPointerObj(new zor::Vec3(*$1), $descriptor(zor::Vec3*), SWIG_POINTER_OWN);
}
%apply zor::Vec3* COPY { zor::Vec3* eye, zor::Vec3* center, zor::Vec3* up };
%include <zorOSG/CameraData.h>
%clear zor::Vec3* eye, zor::Vec3* center, zor::Vec3* up;
