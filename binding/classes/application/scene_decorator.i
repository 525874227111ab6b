// The top of the visible scene. Its proxy gives its reference back through the hook of osg::Group.
%feature("ref") zorOSG::SceneDecorator "osg::Group_reference($this);"
%include <zorOSG/SceneDecorator.h>
