#include <zor/Frame.h>

#include <stdexcept>

namespace zor {

Frame::Frame() = default;

Frame::Frame(AffineMatrix4x4 const& local) {
  if (!local.isFinite()) {
    throw std::invalid_argument("the transform of a frame must be finite");
  }
  m_local = local;
}

Frame::~Frame() {
  leaveParent();
}

void Frame::enterParent() {
  if (!m_parent)
    return;
  m_nextSibling = m_parent->m_firstChild;
  if (m_nextSibling)
    m_nextSibling->m_previousSibling = this;
  m_parent->m_firstChild = this;
}

void Frame::leaveParent() {
  if (!m_parent)
    return;
  (m_previousSibling ? m_previousSibling->m_nextSibling : m_parent->m_firstChild) = m_nextSibling;
  if (m_nextSibling)
    m_nextSibling->m_previousSibling = m_previousSibling;
  m_previousSibling = m_nextSibling = nullptr;
}

// Without recursion: frames may stand in each other without a limit.
void Frame::tellMoved() {
  Frame* frame = this;
  while (true) {
    frame->moved();
    if (frame->m_firstChild) {
      frame = frame->m_firstChild;
      continue;
    }
    while (frame != this && !frame->m_nextSibling)
      frame = frame->getParent();
    if (frame == this)
      return;
    frame = frame->m_nextSibling;
  }
}

void Frame::setParent(zor::Frame* parent) {
  for (Frame const* ancestor = parent; ancestor; ancestor = ancestor->getParent()) {
    if (ancestor == this) {
      throw std::invalid_argument("a frame can't stand in itself or in a frame that stands in it");
    }
  }
  zor::ref_ptr<Frame> const kept(parent); // the old parent may be what holds the new one
  leaveParent();
  m_parent = parent;
  enterParent();
  tellMoved();
  changed();
}

void Frame::setLocalMatrix(AffineMatrix4x4 const& matrix) {
  if (!matrix.isFinite()) {
    throw std::invalid_argument("the transform of a frame must be finite");
  }
  m_local = matrix;
  tellMoved();
  changed();
}

AffineMatrix4x4 Frame::getMatrix() const {
  AffineMatrix4x4 result = m_local;
  for (Frame const* ancestor = getParent(); ancestor; ancestor = ancestor->getParent()) {
    result *= ancestor->m_local;
  }
  return result;
}

void Frame::setMatrix(AffineMatrix4x4 const& matrix) {
  setLocalMatrix(m_parent ? matrix * m_parent->getMatrix().inverse() : matrix);
}

void Frame::setLocalTranslate(Vec3 const& translate) {
  AffineMatrix4x4 matrix = m_local;
  matrix.setTranslate(translate);
  setLocalMatrix(matrix);
}

void Frame::setLocalRotate(Quat const& rotate) {
  AffineMatrix4x4 matrix = m_local;
  matrix.setRotate(rotate);
  setLocalMatrix(matrix);
}

void Frame::setTranslate(Vec3 const& translate) {
  AffineMatrix4x4 matrix = getMatrix();
  matrix.setTranslate(translate);
  setMatrix(matrix);
}

void Frame::setRotate(Quat const& rotate) {
  AffineMatrix4x4 matrix = getMatrix();
  matrix.setRotate(rotate);
  setMatrix(matrix);
}

void Frame::changed() {}

void Frame::moved() {}

} // namespace zor
