#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Quat.h>
#include <zor/Referenced.h>
#include <zor/Vec3.h>
#include <zor/ref_ptr.h>

namespace zor {

/** Coordinate system that stands in the world or in a parent frame. Lengths in metres. */
class Frame : public Referenced {
public:
  /** A frame at the origin of the world. */
  Frame();

  /** \param local - transform from this frame to its parent, or to the world */
  explicit Frame(AffineMatrix4x4 const& local);

  Frame(Frame const&) = delete;
  Frame& operator=(Frame const&) = delete;

  /**
   * \param parent - frame that this one moves with, held; null for the world. The local transform stays.
   * \throws std::invalid_argument if parent is this frame or stands in it
   */
  void setParent(zor::Frame* parent);

  /** \return the parent frame, or null for the world */
  zor::Frame* getParent() const { return m_parent.get(); }

  /** \return transform from this frame to its parent */
  AffineMatrix4x4 const& getLocalMatrix() const { return m_local; }

  /** \param matrix - transform from this frame to its parent \throws std::invalid_argument if it is not
   * finite */
  void setLocalMatrix(AffineMatrix4x4 const& matrix);

  /** \return transform from this frame to the world */
  AffineMatrix4x4 getMatrix() const;

  /** \param matrix - transform from this frame to the world \throws std::invalid_argument if it is not finite
   */
  void setMatrix(AffineMatrix4x4 const& matrix);

  /** \return the origin in the parent */
  Vec3 getLocalTranslate() const { return m_local.getTranslate(); }
  /** \param translate - the origin in the parent \throws std::invalid_argument if it is not finite */
  void setLocalTranslate(Vec3 const& translate);
  /** \return the orientation in the parent */
  Quat getLocalRotate() const { return m_local.getRotate(); }
  /** \param rotate - the orientation in the parent \throws std::invalid_argument if it is not finite */
  void setLocalRotate(Quat const& rotate);

  /** \return the origin in the world */
  Vec3 getTranslate() const { return getMatrix().getTranslate(); }
  /** \param translate - the origin in the world \throws std::invalid_argument if it is not finite */
  void setTranslate(Vec3 const& translate);
  /** \return the orientation in the world */
  Quat getRotate() const { return getMatrix().getRotate(); }
  /** \param rotate - the orientation in the world \throws std::invalid_argument if it is not finite */
  void setRotate(Quat const& rotate);

  /** \param point - a point in this frame \return the point in the world */
  Vec3 transformPointToWorld(Vec3 const& point) const { return getMatrix().transformPoint(point); }
  /** \param point - a point in the world \return the point in this frame */
  Vec3 transformPointToLocal(Vec3 const& point) const { return getMatrix().inverse().transformPoint(point); }
  /** \param vector - a direction in this frame \return the direction in the world */
  Vec3 transformVectorToWorld(Vec3 const& vector) const { return getMatrix().transformVector(vector); }
  /** \param vector - a direction in the world \return the direction in this frame */
  Vec3 transformVectorToLocal(Vec3 const& vector) const {
    return getMatrix().inverse().transformVector(vector);
  }

protected:
  ~Frame() override;

  /** Called after the local transform or the parent was changed. */
  virtual void changed();

  /**
   * Called after the frame, or one that it stands in, was changed: its place in the world may be another.
   * Notes that, and leaves all frames as they are.
   */
  virtual void moved();

private:
  void tellMoved();
  void enterParent();
  void leaveParent();

  AffineMatrix4x4 m_local;
  zor::ref_ptr<Frame> m_parent;
  // The frames that stand in this one, which hold it.
  Frame* m_firstChild = nullptr;
  Frame* m_previousSibling = nullptr;
  Frame* m_nextSibling = nullptr;
};

} // namespace zor
