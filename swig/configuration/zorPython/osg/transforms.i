// Transforms and cameras.

ZOR_INNER_RESULT(osg::MatrixTransform::getMatrix)
OSG_OWNED(MatrixTransform)
OSG_OWNED(PositionAttitudeTransform)
OSG_OWNED(AutoTransform)
OSG_OWNED(Camera)
OSG_BASE_CLASS(osg, Transform)
ZOR_INNER_RESULT(osg::PositionAttitudeTransform::getPosition)
ZOR_INNER_RESULT(osg::PositionAttitudeTransform::getAttitude)
ZOR_INNER_RESULT(osg::PositionAttitudeTransform::getScale)
ZOR_INNER_RESULT(osg::PositionAttitudeTransform::getPivotPoint)
ZOR_INNER_RESULT(osg::AutoTransform::getPosition)
ZOR_INNER_RESULT(osg::AutoTransform::getRotation)
ZOR_INNER_RESULT(osg::AutoTransform::getScale)
ZOR_INNER_RESULT(osg::AutoTransform::getPivotPoint)
ZOR_INNER_RESULT(osg::Camera::getClearColor)
ZOR_INNER_RESULT(osg::Camera::getViewMatrix)
ZOR_INNER_RESULT(osg::Camera::getProjectionMatrix)

%nodefaultctor osg::RenderInfo;
%nodefaultdtor osg::RenderInfo;

// The class stands beside the camera's, since the generator flattens nested classes.
%feature("flatnested") osg::Camera::DrawCallback;
%rename(CameraDrawCallback) osg::Camera::DrawCallback;
%rename(__call__) osg::Camera::DrawCallback::operator();
%feature("director") osg::Camera::DrawCallback;
%feature("ref") osg::Camera::DrawCallback "$this->ref();"
%extend osg::Camera::DrawCallback {
  ~DrawCallback() { $self->unref(); }
}
ZOR_LENT_VALUE_TO_CALLBACK(osg::RenderInfo)
ZOR_CALLBACK(osg::Camera::DrawCallback::operator(), )
%feature("director:except") osg::Camera::DrawCallback::operator() {
  if ($error != NULL) {
    zorBinding::registerDirectorError("osg::Camera::DrawCallback::operator()", "operator()", "swig/configuration/zorPython/osg.i", 25);
    return;
  }
}

namespace osg {

/** A group whose children have coordinates of their own. */
class Transform : public Group {
public:
  enum ReferenceFrame { RELATIVE_RF, ABSOLUTE_RF, ABSOLUTE_RF_INHERIT_VIEWPOINT };
  /** \param frame - ABSOLUTE_RF: the coordinates are the world's, whatever is above the node */
  void setReferenceFrame(ReferenceFrame frame);
  ReferenceFrame getReferenceFrame() const;
};

class MatrixTransform : public Transform {
public:
  MatrixTransform();
  /** \param matrix - from the children's coordinates to the parent's */
  MatrixTransform(osg::Matrixd const& matrix);
  osg::Matrixd const& getMatrix() const;
  void setMatrix(osg::Matrixd const& matrix);
  /** Puts a transform in front: applied to the children before the one that is there. */
  void preMult(osg::Matrixd const& matrix);
  /** Puts a transform behind: applied after the one that is there. */
  void postMult(osg::Matrixd const& matrix);
};

class PositionAttitudeTransform : public Transform {
public:
  PositionAttitudeTransform();
  void setPosition(osg::Vec3d const& position);
  osg::Vec3d const& getPosition() const;
  void setAttitude(osg::Quat const& attitude);
  osg::Quat const& getAttitude() const;
  void setScale(osg::Vec3d const& scale);
  osg::Vec3d const& getScale() const;
  /** \param pivot - the point, in the children's coordinates, about which is rotated and scaled */
  void setPivotPoint(osg::Vec3d const& pivot);
  osg::Vec3d const& getPivotPoint() const;
};

/** Turns its children to the viewer, or gives them a size on the screen. */
class AutoTransform : public Transform {
public:
  enum AutoRotateMode { NO_ROTATION, ROTATE_TO_SCREEN, ROTATE_TO_CAMERA, ROTATE_TO_AXIS };
  AutoTransform();
  void setPosition(osg::Vec3d const& position);
  osg::Vec3d const& getPosition() const;
  void setRotation(osg::Quat const& rotation);
  osg::Quat const& getRotation() const;
  void setScale(osg::Vec3d const& scale);
  osg::Vec3d const& getScale() const;
  void setMinimumScale(double scale);
  double getMinimumScale() const;
  void setMaximumScale(double scale);
  double getMaximumScale() const;
  void setPivotPoint(osg::Vec3d const& pivot);
  osg::Vec3d const& getPivotPoint() const;
  void setAutoRotateMode(AutoRotateMode mode);
  AutoRotateMode getAutoRotateMode() const;
  void setAxis(osg::Vec3f const& axis);
  void setNormal(osg::Vec3f const& normal);
  /** \param scale - true: a unit of the children's coordinates is a pixel on the screen */
  void setAutoScaleToScreen(bool scale);
  bool getAutoScaleToScreen() const;
};

/** Where a drawing operation takes place. */
class RenderInfo {
public:
  osg::Camera* getCurrentCamera();
};

/** Draws what is below it, from a place of its own. */
class Camera : public Transform {
public:
  enum RenderOrder { PRE_RENDER, NESTED_RENDER, POST_RENDER };
  enum TransformOrder { PRE_MULTIPLY, POST_MULTIPLY };
  enum ProjectionResizePolicy { FIXED, HORIZONTAL, VERTICAL };
  enum ComputeNearFarMode {
    DO_NOT_COMPUTE_NEAR_FAR = 0,
    COMPUTE_NEAR_FAR_USING_BOUNDING_VOLUMES,
    COMPUTE_NEAR_FAR_USING_PRIMITIVES,
    COMPUTE_NEAR_USING_PRIMITIVES
  };
  Camera();
  osg::Vec4f const& getClearColor() const;
  void setClearColor(osg::Vec4f const& color);
  /** \param mask - what is cleared before drawing: osg.GL_COLOR_BUFFER_BIT | osg.GL_DEPTH_BUFFER_BIT, or 0 for nothing */
  void setClearMask(unsigned int mask);
  unsigned int getClearMask() const;
  void setClearDepth(double depth);
  double getClearDepth() const;
  osg::Matrixd const& getViewMatrix() const;
  void setViewMatrix(osg::Matrixd const& matrix);
  osg::Matrixd getInverseViewMatrix() const;
  osg::Matrixd const& getProjectionMatrix() const;
  void setProjectionMatrix(osg::Matrixd const& matrix);
  /** \param fovy - vertical angle of view (degrees) \param aspectRatio - width divided by height */
  void setProjectionMatrixAsPerspective(double fovy, double aspectRatio, double zNear, double zFar);
  void setProjectionMatrixAsOrtho(double left, double right, double bottom, double top, double zNear, double zFar);
  void setProjectionMatrixAsOrtho2D(double left, double right, double bottom, double top);
  void setProjectionMatrixAsFrustum(double left, double right, double bottom, double top, double zNear, double zFar);
  /** Puts the camera at a point. \param eye - where it is \param center - what it looks at \param up - what is above */
  void setViewMatrixAsLookAt(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up);
  /** \param policy - what becomes of the projection when the window's shape changes */
  void setProjectionResizePolicy(ProjectionResizePolicy policy);
  ProjectionResizePolicy getProjectionResizePolicy() const;
  /** \param order - before, within or after what is above the camera \param number - among those of the same order */
  void setRenderOrder(RenderOrder order, int number = 0);
  RenderOrder getRenderOrder() const;
  int getRenderOrderNum() const;
  void setTransformOrder(TransformOrder order);
  TransformOrder getTransformOrder() const;
  /** \param allow - whether the mouse over this camera's picture is this camera's */
  void setAllowEventFocus(bool allow);
  bool getAllowEventFocus() const;
  /** \return the mask that nodes are compared with: one without a common bit is not drawn */
  unsigned int getCullMask() const;
  void setCullMask(unsigned int mask);
  float getLODScale() const;
  /** \param scale - factor of the distances that LOD nodes compare */
  void setLODScale(float scale);
  double getNearFarRatio() const;
  void setNearFarRatio(double ratio);

  /** What a camera calls while it draws. Derive from it, override `__call__`, and keep the object. */
  struct DrawCallback : public Object {
    DrawCallback();
    virtual void operator()(osg::RenderInfo& renderInfo) const;
  };
  /** Sets what is called after the target is cleared and before anything is drawn. */
  void setPreDrawCallback(DrawCallback* callback);
  /** Sets what is called when everything below the camera has been drawn. */
  void setPostDrawCallback(DrawCallback* callback);
  /** Sets what is called at the end of the frame. */
  void setFinalDrawCallback(DrawCallback* callback);
};
%extend Camera {
  /** \param mode - whether near and far plane are fitted to the scene */
  void setComputeNearFarMode(osg::Camera::ComputeNearFarMode mode) { $self->setComputeNearFarMode(mode); }
  osg::Camera::ComputeNearFarMode getComputeNearFarMode() const { return $self->getComputeNearFarMode(); }
  void _setViewport(double x, double y, double width, double height) {
    if (!(width >= 0 && width <= 32768 && height >= 0 && height <= 32768))
      throw std::invalid_argument("a viewport is 0 to 32768 pixels wide and high");
    $self->setViewport(new osg::Viewport(x, y, width, height));
  }
  /** \return x, y, width and height in pixels; None while there is no viewport */
  PyObject* getViewport() const {
    osg::Viewport const* viewport = $self->getViewport();
    if (!viewport) Py_RETURN_NONE;
    return Py_BuildValue("dddd", viewport->x(), viewport->y(), viewport->width(), viewport->height());
  }
  osg::Vec3d _eye() const {
    osg::Vec3d eye, center, up;
    $self->getViewMatrixAsLookAt(eye, center, up);
    return eye;
  }
  osg::Vec3d _center(double distance) const {
    osg::Vec3d eye, center, up;
    $self->getViewMatrixAsLookAt(eye, center, up, distance);
    return center;
  }
  osg::Vec3d _up() const {
    osg::Vec3d eye, center, up;
    $self->getViewMatrixAsLookAt(eye, center, up);
    return up;
  }
  PyObject* _perspective() const {
    double fovy = 0, ratio = 0, zNear = 0, zFar = 0;
    if (!$self->getProjectionMatrixAsPerspective(fovy, ratio, zNear, zFar)) Py_RETURN_NONE;
    return Py_BuildValue("dddd", fovy, ratio, zNear, zFar);
  }
  %pythoncode %{
    def setViewport(self, x: float, y: float, width: float, height: float) -> None:
        """Sets the part of the window or target that is drawn into (pixels)."""
        self._setViewport(x, y, width, height)

    def getViewMatrixAsLookAt(self, distance: float = 1.0) -> tuple[Vec3d, Vec3d, Vec3d]:
        """Returns where the camera is, a point in front of it at a distance, and its upward direction."""
        return self._eye(), self._center(distance), self._up()

    def getProjectionMatrixAsPerspective(self) -> tuple[float, float, float, float] | None:
        """Returns angle of view (degrees), aspect ratio, near and far plane; None for another projection."""
        return self._perspective()
  %}
}

} // namespace osg
