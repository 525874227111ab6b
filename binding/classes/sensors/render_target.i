// Rendering into images and textures.
ZOR_INNER_RESULT(zorOSG::RenderToImage::getImage)
ZOR_INNER_RESULT(zorOSG::RenderToTexture::getTexture)

%extend zorOSG::RenderTarget {
  %pythoncode %{
    def record(self, path: str, fps: float = 30.0, *, simulation: zorSDK.Simulation | None = None, speed: float = 1.0, codec: int | None = None,
               crf: int = 20, lossless: bool = False) -> Recording:
        """
        Returns a context manager: what the target draws in its block becomes a video or numbered pictures.

        :param path: name of the file; see ExampleApplication.record()
        :param fps: pictures a second of the video
        :param simulation: whose time is the video's; without one it is that of the clock on the wall
        :param speed: how many times as fast as in that time the video plays
        :param codec: one of VideoFFMPEGPipeCapture.OutputCodec_H264, OutputCodec_H264RGB and OutputCodec_XVID
        :param crf: how well it is encoded, 0 (best) to 51
        :param lossless: whether every colour is kept as it is
        """
        return _record_target(self, path, simulation, _RecordSettings(fps, speed, codec, crf, lossless))
  %}
}

%extend zorOSG::RenderToImage {
  %pythoncode %{
    def asArray(self, topFirst: bool = False) -> numpy.typing.NDArray[Any]:
        """
        Returns the last frame as a numpy array of height x width x components, without a copy: 8-bit colours, or the
        depth buffer's own values from 0 (near plane) to 1 (far plane). The next frames are put into the same memory while
        the array is alive: copy what is to be kept.

        :param topFirst: whether the first row is the highest, as other libraries have it, and not the lowest
        """
        return self.getImage().asArray(topFirst)

    def depthArray(self, topFirst: bool = False) -> numpy.typing.NDArray[numpy.float32]:
        """
        Returns a new numpy array of height x width distances from the camera's plane (m), infinite where nothing was
        drawn. The target must have been made with DEPTH_BUFFER.

        :param topFirst: whether the first row is the highest, as other libraries have it, and not the lowest
        """
        import numpy
        image = self.getImage()
        if image.getPixelFormat() != osg.GL_DEPTH_COMPONENT:
            raise ValueError("the target holds colours; make it with zorOSG.RenderTarget.DEPTH_BUFFER")
        depth = image.asArray(topFirst)[..., 0]
        projection = image.getUserValue("projection")
        if projection is None: # nothing was drawn yet
            return numpy.full(depth.shape, numpy.inf, numpy.float32)
        clip = 2.0 * depth.astype(numpy.float64) - 1.0
        distance = (projection[3, 2] - clip * projection[3, 3]) / (projection[2, 2] - clip * projection[2, 3])
        return numpy.where(depth < 1, distance, numpy.inf).astype(numpy.float32)
  %}
}

%include <zorOSG/RenderTarget.h>
%include <zorOSG/RenderToImage.h>
%include <zorOSG/RenderToTexture.h>
