#include <zorModel/MeshReader.h>

#include <mutex>

namespace zorModel {

namespace {

std::mutex installMutex;

zor::ref_ptr<MeshReader>& installedReader() {
  static zor::ref_ptr<MeshReader> reader;
  return reader;
}

} // namespace

void MeshReader::install(MeshReader* reader) {
  std::lock_guard const lock(installMutex);
  installedReader() = reader;
}

zor::ref_ptr<MeshReader> MeshReader::installed() {
  std::lock_guard const lock(installMutex);
  return installedReader();
}

} // namespace zorModel
