#pragma once

#include <zor/Object.h>
#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorOSG/ImageCaptureBase.h>

#include <osg/Camera>
#include <osg/GL>
#include <osg/Image>

namespace zorOSG {

/**
 * An off-screen camera that renders the nodes below it into a buffer of its own.
 *
 * Added to an application (ExampleApplication::addRenderTarget) or put under any group of a viewer's graph,
 * it is drawn before the main view of every frame. The window size does not affect it.
 */
class RenderTarget : public zor::Object {
public:
  /** The part of the frame buffer that is rendered. */
  enum BufferComponent : int {
    DEPTH_BUFFER = 0, ///< Distances.
    COLOR_BUFFER = 3  ///< Colours.
  };

  /** Pixel format of the buffer: the OpenGL format values. */
  enum TextureFormat : int {
    RGB = GL_RGB,                        ///< Red, green and blue.
    RGBA = GL_RGBA,                      ///< Red, green, blue and alpha.
    DEPTH_COMPONENT = GL_DEPTH_COMPONENT ///< Distances from the camera.
  };

  /** How near and far planes are found: the scene graph's cull-settings values. */
  enum ComputeNearFarMode : int {
    DO_NOT_COMPUTE_NEAR_FAR = 0,                 ///< They stay as the projection has them.
    COMPUTE_NEAR_FAR_USING_BOUNDING_VOLUMES = 1, ///< Both from the bounding volumes of what is seen: fast.
    COMPUTE_NEAR_FAR_USING_PRIMITIVES = 2,       ///< Both from the triangles that are seen: close.
    COMPUTE_NEAR_USING_PRIMITIVES =
        3 ///< The near plane from the triangles, the far plane from the bounding volumes.
  };

  /**
   * \param width - width of the buffer in pixels, 1 to 16384.
   * \param height - height of the buffer in pixels, 1 to 16384.
   * \throws std::invalid_argument for a size outside that range.
   */
  RenderTarget(zor::UInt width, zor::UInt height);

  /**
   * Makes the target follow another camera: view and projection are copied from it before every frame.
   * The aspect ratio is adapted to the target's own size.
   * \param referenceCamera - the camera to follow, kept alive by the target; null stops following.
   */
  void setReferenceCamera(osg::Camera const* referenceCamera);

  /**
   * Attaches a capture that stores every frame the target draws.
   * \param imageCapture - the capture, kept alive by the target; null detaches.
   */
  void setImageCapture(zorOSG::ImageCaptureBase* imageCapture);

  /** \return the attached capture, borrowed; null if there is none. */
  zorOSG::ImageCaptureBase* getImageCapture();

  /**
   * Resizes the buffer.
   * \param width - width in pixels, 1 to 16384.
   * \param height - height in pixels, 1 to 16384.
   * \throws std::invalid_argument for a size outside that range.
   */
  void setSize(zor::UInt width, zor::UInt height);

  /**
   * Resizes the buffer.
   * \param size - width and height in pixels, each 1 to 16384.
   */
  void setSize(zor::Vec2u size);

  /** \return width and height of the buffer in pixels. */
  zor::Vec2u getSize() const;

  /** \return the target's own camera, borrowed. */
  osg::Camera* getCamera();

  /**
   * Adds a callback that runs on the draw thread before the target is drawn, after those added earlier.
   * \param callback - kept alive by the target.
   * \throws std::invalid_argument if callback is null.
   */
  void addPreRenderCallback(osg::Camera::DrawCallback* callback);

  /**
   * Places the camera.
   * \param eye - position of the camera (m).
   * \param center - point looked at (m).
   * \param up - direction shown upwards.
   */
  void setViewMatrixAsLookAt(zor::Vec3 const& eye, zor::Vec3 const& center, zor::Vec3 const& up);

  /**
   * Copies the view matrix of another camera once.
   * \throws std::invalid_argument if camera is null.
   */
  void setViewMatrixFromOtherCamera(osg::Camera const* camera);

  /**
   * Sets a perspective projection.
   * \param fovy - vertical field of view (degrees).
   * \param aspectRatio - width over height.
   * \param zNear - distance of the near plane (m), more than 0.
   * \param zFar - distance of the far plane (m), more than zNear.
   */
  void setProjectionMatrixAsPerspective(double fovy, double aspectRatio, double zNear, double zFar);

  /**
   * Copies the projection matrix of another camera once.
   * \throws std::invalid_argument if camera is null.
   */
  void setProjectionMatrixFromOtherCamera(osg::Camera const* camera);

  /** Sets an orthographic projection of the given box in eye coordinates (m). */
  void setProjectionMatrixAsOrtho(double left, double right, double bottom, double top, double zNear,
                                  double zFar);

  /** \param mode - how near and far planes are found when the target is culled. */
  void setComputeNearFarMode(ComputeNearFarMode mode);

  /**
   * Projects a point with the target's camera.
   * \param worldPos - the point in world coordinates (m).
   * \return position in pixels of the target, (0, 0) the lower left corner; NaN for a point that is not in
   * front of the camera.
   */
  zor::Vec2 calculateScreenCoords(zor::Vec3& worldPos);

  /** \param mask - the target draws a node if the node's mask and this mask share a bit. */
  void setCameraCullMask(int mask);

  /** \return the camera's cull mask. */
  int getCameraCullMask() const;

protected:
  ~RenderTarget() override;

  /** Binds the buffers to the camera; called at construction and after every change of size. */
  virtual void attachBuffers();

  /** \return the pixels of the frame just drawn; called on the draw thread when a capture is attached. */
  virtual osg::Image* readFrame(osg::RenderInfo& renderInfo);

private:
  class FollowingCamera;
  class CaptureCallback;

  void attachColorBuffer();

  osg::ref_ptr<FollowingCamera> m_camera;
  osg::ref_ptr<osg::Image> m_readback;
  zor::ref_ptr<ImageCaptureBase> m_imageCapture;
  zor::Vec2u m_size;
};

} // namespace zorOSG
