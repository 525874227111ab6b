#pragma once

#include <zor/Object.h>
#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorOSG/ImageCaptureBase.h>

#include <osg/Camera>
#include <osg/GL>
#include <osg/Texture2D>

#include <memory>

namespace zorOSG {

class TargetPixels;

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
   * \throws std::invalid_argument if the target renders depth, which has no colours to store.
   */
  void setImageCapture(zorOSG::ImageCaptureBase* imageCapture);

  /** \return the attached capture, borrowed; null if there is none. */
  zorOSG::ImageCaptureBase* getImageCapture();

  /**
   * Resizes the buffer, from the next frame on; what the last frame has drawn is given up.
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
   * \param callback - kept alive by the target; one that is there already is not added again.
   * \throws std::invalid_argument if callback is null.
   */
  void addPreRenderCallback(osg::Camera::DrawCallback* callback);

  /**
   * Places the camera.
   * \param eye - position of the camera (m).
   * \param center - point looked at (m).
   * \param up - direction shown upwards.
   * \throws std::invalid_argument unless the three are finite, eye and center differ and up leads aside from
   * the line between them.
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
  RenderTarget(zor::UInt width, zor::UInt height, BufferComponent bufferComponent, zor::UInt multiSamples,
               TextureFormat textureFormat);
  ~RenderTarget() override;

  BufferComponent getComponent() const { return m_component; }
  TextureFormat getFormat() const { return m_format; }

  /** \return the texture that is drawn into. */
  osg::Texture2D* getBuffer() const { return m_buffer.get(); }

  /** \return how its pixels are read. */
  TargetPixels const& getPixels() const { return *m_pixels; }

  /** \return the projection that the last frame was drawn with: near and far plane are as the scene made
   * them. */
  osg::Matrixd const& getDrawnProjection() const;

  /** Called after a change of size. */
  virtual void resized();

  /** Called with the context current when the target has been drawn, before the rest of the frame. */
  virtual void targetDrawn(osg::State& state);

  /** Called with the context current when the frame that shows the target is complete. */
  virtual void frameDrawn(osg::State& state);

private:
  class FollowingCamera;
  class FrameHooks;

  void attachBuffers();

  osg::ref_ptr<FollowingCamera> m_camera;
  osg::ref_ptr<FrameHooks> m_hooks;
  osg::ref_ptr<osg::Texture2D> m_buffer;
  std::unique_ptr<TargetPixels> m_pixels;
  zor::ref_ptr<ImageCaptureBase> m_imageCapture;
  zor::Vec2u m_size;
  BufferComponent m_component;
  unsigned int m_multiSamples;
  TextureFormat m_format;
};

} // namespace zorOSG
