#include <zorOSG/RenderToImage.h>

#include "AtomicFile.h"
#include "ContextScope.h"
#include "PixelTransfer.h"
#include "TargetPixels.h"

#include <zor/Notify.h>

#include <osg/ValueObject>

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace zorOSG {

namespace {

constexpr std::size_t s_largePage = std::size_t{2} << 20;

/**
 * Zeros for malloc's free(). Large pictures lie on large pages where the system has them, since copying to
 * small ones is felt in every frame.
 */
unsigned char* allocatePixels(std::size_t size) {
  bool const isLarge = size >= 2 * s_largePage;
  std::size_t const whole = (size + s_largePage - 1) / s_largePage * s_largePage;
  void* const memory = isLarge ? std::aligned_alloc(s_largePage, whole) : std::malloc(size);
  if (!memory) {
    throw std::bad_alloc();
  }
  if (isLarge) {
    madvise(memory, whole, MADV_HUGEPAGE);
  }
  std::memset(memory, 0, size);
  return static_cast<unsigned char*>(memory);
}

} // namespace

RenderToImage::RenderToImage(zor::UInt width, zor::UInt height, BufferComponent bufferComponent,
                             zor::UInt multiSamples, TextureFormat textureFormat)
    : RenderTarget(width, height, bufferComponent, multiSamples, textureFormat),
      m_transfer(std::make_unique<PixelTransfer>()) {
  makeImage();
}

RenderToImage::~RenderToImage() = default;

osg::Image* RenderToImage::getImage() {
  fetch();
  return m_image.get();
}

bool RenderToImage::extractImageData(unsigned char* img, int size) const {
  if (!img || size < 0 || static_cast<unsigned int>(size) != m_image->getTotalSizeInBytes()) {
    return false;
  }
  fetch();
  std::memmove(img, m_image->data(), static_cast<std::size_t>(size)); // it may be the image's own data
  return true;
}

unsigned char* RenderToImage::getImageData() {
  fetch();
  m_isDataKnown = true;
  return m_image->data();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature scripts see
bool RenderToImage::saveImage(zor::String filename) const {
  try {
    if (getComponent() == DEPTH_BUFFER) {
      throw std::runtime_error("cannot save '" + filename + "': the render target holds depth, not colour");
    }
    fetch();
    writeImageAtomically(*m_image, filename);
    return true;
  } catch (std::exception const& e) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << e.what() << zor::endMessage;
    return false;
  }
}

/** Another image, so that whoever looks at the pixels of this one can go on looking. */
void RenderToImage::makeImage() {
  zor::Vec2u const size = getSize();
  auto const format = static_cast<GLenum>(getFormat());
  GLenum const type = getComponent() == DEPTH_BUFFER ? GL_FLOAT : GL_UNSIGNED_BYTE;
  std::size_t const row = osg::Image::computeRowWidthInBytes(static_cast<int>(size[0]), format, type, 1);
  m_image = new osg::Image;
  m_image->setImage(static_cast<int>(size[0]), static_cast<int>(size[1]), 1, static_cast<GLint>(format),
                    format, type, allocatePixels(row * size[1]), osg::Image::USE_MALLOC_FREE);
}

void RenderToImage::resized() {
  m_transfer->cancel();
  m_isStale = m_isDataKnown = false;
  makeImage();
}

/** \return true if the pixels of the next frame are likely to be wanted: bringing them now saves a change of
 * context. */
bool RenderToImage::isWatched() const {
  return m_isDataKnown || m_wasAsked || m_image->referenceCount() > 1;
}

/**
 * Pixels that are read directly are read now: a software renderer would have to finish the rest of the frame
 * first. A context of somebody else cannot be asked later.
 */
void RenderToImage::targetDrawn(osg::State& state) {
  m_context = state.getGraphicsContext();
  m_isStale = true;
  bool const isWanted = isWatched() || !ContextScope::isPossible(state.getGraphicsContext());
  m_wasAsked = false;
  if (isWanted && hasAsynchronousReadBack(state)) {
    m_transfer->start(state, getPixels(), m_image->getPixelFormat(), m_image->getDataType(),
                      m_image->getTotalSizeInBytes());
  } else if (isWanted) {
    read(state);
  }
  RenderTarget::targetDrawn(state);
}

void RenderToImage::frameDrawn(osg::State& state) {
  if (!m_transfer->isPending()) {
    return;
  }
  if (m_transfer->finish(state, m_image->data())) {
    m_isStale = false;
    dated();
  } else {
    read(state);
  }
}

/** Brings the pixels of the last frame if nobody has wanted them so far. */
void RenderToImage::fetch() const {
  m_wasAsked = true;
  osg::ref_ptr<osg::GraphicsContext> context;
  if (!m_isStale || !m_context.lock(context)) {
    return;
  }
  ContextScope const scope(context);
  if (scope.isCurrent()) {
    read(*context->getState());
  }
}

void RenderToImage::read(osg::State& state) const {
  getPixels().read(state, m_image->getPixelFormat(), m_image->getDataType(), m_image->data());
  m_isStale = false;
  dated();
}

void RenderToImage::dated() const {
  m_image->dirty();
  if (getComponent() == DEPTH_BUFFER) {
    m_image->setUserValue("projection", getDrawnProjection());
  }
}

} // namespace zorOSG
