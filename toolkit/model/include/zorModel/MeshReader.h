#pragma once

#include <string>

#include <zor/Referenced.h>
#include <zor/ref_ptr.h>
#include <zorRender/RenderData.h>

namespace zorModel {

/** Reads mesh files of the formats that this library does not know itself. A library that can read more, such
 * as the drawing layer, installs one. */
class MeshReader : public zor::Referenced {
public:
  /** \param path - an existing file \return its triangles, not null \throws std::runtime_error that says why
   * it cannot be read; the caller adds the file's name */
  virtual zor::ref_ptr<zorRender::RenderData> read(std::string const& path) = 0;

  /** \param reader - reads from now on what readMesh() does not know; null for none */
  static void install(MeshReader* reader);

  /** \return the installed reader, or null */
  static zor::ref_ptr<MeshReader> installed();

protected:
  ~MeshReader() override = default;
};

} // namespace zorModel
