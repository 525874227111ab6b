// Docstrings of what is declared here as OpenSceneGraph has it, where its own pages would be far.

%define OSG_DOC(NAME, TEXT)
%feature("docstring") osg::NAME TEXT;
%enddef

%define OSG_COMPONENT_DOC(TYPE, NAME)
OSG_DOC(TYPE::NAME, ":return: the component")
%enddef

%define OSG_VECTOR_DOC(TYPE, WHAT)
OSG_DOC(TYPE, WHAT)
OSG_DOC(TYPE::TYPE, "Makes a vector of its components, by default of zeros.")
OSG_DOC(TYPE::set, "Sets all components.")
OSG_COMPONENT_DOC(TYPE, x)
OSG_COMPONENT_DOC(TYPE, y)
OSG_COMPONENT_DOC(TYPE, z)
OSG_COMPONENT_DOC(TYPE, w)
OSG_DOC(TYPE::length, ":return: the length")
OSG_DOC(TYPE::length2, ":return: the square of the length")
OSG_DOC(TYPE::normalize, "Scales to length 1; zero stays. :return: the length before")
%enddef

OSG_VECTOR_DOC(Vec2f, "Vector of 2 numbers in single precision.")
OSG_VECTOR_DOC(Vec2d, "Vector of 2 numbers in double precision.")
OSG_VECTOR_DOC(Vec3f, "Vector of 3 numbers in single precision.")
OSG_VECTOR_DOC(Vec3d, "Vector of 3 numbers in double precision.")
OSG_VECTOR_DOC(Vec4f, "Vector of 4 numbers in single precision; a colour is red, green, blue and alpha, each 0 to 1.")
OSG_VECTOR_DOC(Vec4d, "Vector of 4 numbers in double precision.")

OSG_DOC(Vec4ub::Vec4ub, "Makes a colour of red, green, blue and alpha, each 0 to 255.")
OSG_COMPONENT_DOC(Vec4ub, r)
OSG_COMPONENT_DOC(Vec4ub, g)
OSG_COMPONENT_DOC(Vec4ub, b)
OSG_COMPONENT_DOC(Vec4ub, a)

OSG_COMPONENT_DOC(Quat, x)
OSG_COMPONENT_DOC(Quat, y)
OSG_COMPONENT_DOC(Quat, z)
OSG_COMPONENT_DOC(Quat, w)
OSG_DOC(Quat::length, ":return: the length; 1 for a rotation")
OSG_DOC(Quat::inverse, ":return: the rotation that undoes this one")

OSG_DOC(Matrixd::Matrixd, "Makes the identity, or a matrix of its 16 elements row after row.")
OSG_DOC(Matrixd::identity, ":return: the transform that changes nothing")
OSG_DOC(Matrixd::translate, ":return: a translation")
OSG_DOC(Matrixd::scale, ":return: a scale by one factor along each axis")
OSG_DOC(Matrixd::lookAt, ":return: the view from an eye point to a centre, with a direction that is up in the picture")
OSG_DOC(Matrixd::perspective, ":return: a projection of a field of view (degrees, from bottom to top), width over height, near and far plane")
OSG_DOC(Matrixd::ortho, ":return: a projection without perspective, of the bounds left, right, bottom, top, near and far")
OSG_DOC(Matrixd::inverse, ":return: the transform that undoes the given one")
OSG_DOC(Matrixd::makeIdentity, "Makes this the transform that changes nothing.")
OSG_DOC(Matrixd::preMult, ":return: a row vector times this matrix: the transformed point")
OSG_DOC(Matrixd::postMult, ":return: this matrix times a column vector")

OSG_DOC(BoundingBox::BoundingBox, "Makes an empty box, or one between its lower and upper corner.")
OSG_DOC(BoundingBox::valid, ":return: false for an empty box")
OSG_DOC(BoundingBox::xMin, ":return: the lower bound along x")
OSG_DOC(BoundingBox::yMin, ":return: the lower bound along y")
OSG_DOC(BoundingBox::zMin, ":return: the lower bound along z")
OSG_DOC(BoundingBox::xMax, ":return: the upper bound along x")
OSG_DOC(BoundingBox::yMax, ":return: the upper bound along y")
OSG_DOC(BoundingBox::zMax, ":return: the upper bound along z")
OSG_DOC(BoundingBox::center, ":return: the middle")
OSG_DOC(BoundingBox::radius, ":return: half the diagonal")
OSG_DOC(BoundingBox::contains, ":return: true if a point lies inside, bounds included")
OSG_DOC(BoundingBox::expandBy, "Grows until it holds a point.")
OSG_DOC(BoundingSphere, "A sphere around something; a negative radius means that there is nothing.")
OSG_DOC(BoundingSphere::BoundingSphere, "Makes an empty sphere, or one of its centre and radius.")
OSG_DOC(BoundingSphere::valid, ":return: false for an empty sphere")
OSG_DOC(BoundingSphere::center, ":return: the centre")
OSG_DOC(BoundingSphere::radius, ":return: the radius")
OSG_DOC(BoundingSphere::contains, ":return: true if a point lies inside, surface included")

%feature("docstring") std::tuple "A group, and for each of its children a number: a pair that unpacks."

OSG_DOC(Group::containsNode, ":return: true if a node is one of the children")
OSG_DOC(MatrixTransform, "A group whose children are transformed by a matrix.")
OSG_DOC(PositionAttitudeTransform, "A group whose children are scaled, turned and moved.")
OSG_DOC(BufferData, "Data that may be kept in the memory of the graphics card.")
OSG_DOC(Drawable::dirtyDisplayList, "Says that the drawable has changed and must be compiled anew.")
OSG_DOC(Box, "A box around its centre, given by half lengths.")
OSG_DOC(Sphere, "A sphere.")
OSG_DOC(Sphere::Sphere, "Makes a sphere of its centre and radius.")
OSG_DOC(Cylinder::Cylinder, "Makes a cylinder along z of its centre, radius and height.")
OSG_DOC(Cone::Cone, "Makes a cone along z of its centre, radius and height; the centre is that of mass.")
OSG_DOC(Capsule::Capsule, "Makes a capsule along z of its centre, radius and the height of its straight part.")
OSG_DOC(ShapeDrawable::ShapeDrawable, "Makes what draws a shape; hints say how finely.")

OSG_DOC(Depth::Depth, "Compares depths by a function, maps them to a range, and writes them or not.")
OSG_DOC(CullFace::CullFace, "Leaves out front faces, back faces or both.")
OSG_DOC(PolygonMode::PolygonMode, "Draws faces filled, as lines or as points.")
OSG_DOC(PolygonOffset::PolygonOffset, "Moves depths by a factor of the slope and by units.")
OSG_DOC(LineWidth::LineWidth, "Draws lines of a width in pixels.")
OSG_DOC(Point::Point, "Draws points of a size in pixels.")
OSG_DOC(LightModel, "Settings that all lights share.")
OSG_DOC(Fog, "Fades what is far into a colour.")
OSG_DOC(TexEnv::TexEnv, "Combines texture and surface colour in a mode.")
OSG_DOC(TexMat::TexMat, "Transforms texture coordinates by a matrix.")
OSG_DOC(AlphaFunc::AlphaFunc, "Draws only pixels whose alpha compares so with a reference.")
OSG_DOC(Texture2D, "A texture of an image.")
OSG_DOC(Texture2D::Texture2D, "Makes a texture, of an image if one is given.")
OSG_DOC(Image::valid, ":return: true if there are pixels")

%feature("docstring") osgGA::EventQueue::empty ":return: true if no event waits"
%feature("docstring") osgGA::EventQueue::clear "Drops all events that wait."
%feature("docstring") osgGA::EventQueue::windowResize "Adds the event of a new place and size of the window."
%feature("docstring") osgGA::EventQueue::closeWindow "Adds the event of a window that is being closed."
%feature("docstring") osgGA::GUIActionAdapter::requestRedraw "Asks for one more frame."
%feature("docstring") osgGA::GUIActionAdapter::requestContinuousUpdate "Asks for frames all the time, or only when something happens."
%feature("docstring") osgGA::StateSetManipulator::StateSetManipulator "Makes a handler that changes the drawing modes of a state set by keys."
%feature("docstring") osgViewer::Viewer::done ":return: true if the viewer is to stop"
%feature("docstring") osgViewer::Viewer::elapsedTime ":return: seconds since the viewer started"
