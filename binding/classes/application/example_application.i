// The application. What it lends to a script keeps it alive.
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSimulation)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneDecorator)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getRoot)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneRoot)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getSceneSwitch)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getCamera)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getTextureCamera)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getViewer)
ZOR_INNER_RESULT(zorOSG::ExampleApplication::getFrameMutex)
// An enumeration of a library whose headers the wrapper generator does not read.
%apply int { osg::NotifySeverity };
%extend zorOSG::ExampleApplication {
  %pythoncode %{
    def record(self, path: str, fps: float = 30.0, *, speed: float = 1.0, codec: int | None = None, crf: int = 20, lossless: bool = False) -> Recording:
        """
        Returns a context manager: what the main view shows in its block becomes a video or numbered pictures, in step with
        the simulation unless setEnableCaptureSyncWithSimulation() says otherwise. They are finished at the end of the
        block, also when it ends with an exception.

        :param path: name of the file, whose suffix selects what is made: .mp4, .mkv, .mov and .avi a video, .gif, .webp and .apng an
            animated picture, others numbered pictures, "shots/box_.png" those from shots/box_00000.png on
        :param fps: pictures a second of the video
        :param speed: how many times as fast as in reality the video plays
        :param codec: one of VideoFFMPEGPipeCapture.OutputCodec_H264, OutputCodec_H264RGB and OutputCodec_XVID; what suits the
            suffix if it is not given
        :param crf: how well it is encoded, 0 (best) to 51
        :param lossless: whether every colour is kept as it is
        """
        return _record_application(self, path, _RecordSettings(fps, speed, codec, crf, lossless))
  %}
}

%include <zorOSG/ExampleApplication.h>
%clear osg::NotifySeverity;
