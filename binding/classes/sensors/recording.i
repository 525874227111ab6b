// Blocks of a script that are recorded, and pictures for documents. All of it is Python over the captures.

%pythoncode %{
_ANIMATIONS = (".gif", ".webp", ".apng")
_VIDEOS = (".mp4", ".mkv", ".mov", ".m4v", ".avi", *_ANIMATIONS)


class _RecordSettings:
    def __init__(self, fps, speed, codec, crf, lossless):
        if not speed > 0:
            raise ValueError("speed must be more than 0")
        self.fps, self.speed, self.codec, self.crf, self.lossless = fps, speed, codec, crf, lossless

    def codec_for(self, suffix):
        if self.codec is not None:
            return self.codec
        if self.lossless: # the only one that keeps every bit
            return VideoFFMPEGPipeCapture.OutputCodec_H264RGB
        return VideoFFMPEGPipeCapture.OutputCodec_XVID if suffix == ".avi" else VideoFFMPEGPipeCapture.OutputCodec_H264

    def apply_to_video(self, video, path, suffix):
        video.setFilename(path)
        video.setVideoFPS(self.fps)
        video.setImageCaptureFPS(self.fps / self.speed)
        video.setOutputVideoCodec(self.codec_for(suffix))
        video.setVideoCRF(self.crf)
        video.setEnableLossless(self.lossless)

    def apply_to_images(self, images, path):
        import os
        folder, name = os.path.split(path)
        prefix, suffix = os.path.splitext(name)
        images.setDirectoryPath(folder or ".")
        images.setPrefix(prefix)
        images.setPostfix(suffix[1:])
        images.setFps(self.fps / self.speed)


def _is_video(path):
    import os
    suffix = os.path.splitext(path)[1].lower()
    if not suffix:
        raise ValueError(f"{path!r} has no suffix to choose a format by, such as .mp4, .gif or .png")
    return suffix in _VIDEOS


class Recording:
    """Frames that are stored while the block of a `with` statement runs; ExampleApplication.record() makes one."""

    def __init__(self, capture: ImageCaptureBase, path: str, start: Callable[[], None], end: Callable[[], None] | None = None):
        """
        Prepares a recording.

        :param capture: what stores the frames
        :param path: file that it makes
        :param start: called before it starts
        :param end: called after it has stopped
        """
        self._capture, self._path, self._start, self._end = capture, path, start, end
        self._before = self._identity()
        self._isVideo = isinstance(capture, VideoFFMPEGPipeCapture)

    def _identity(self):
        import os
        try:
            status = os.stat(self._path)
        except OSError:
            return None
        return status.st_ino, status.st_mtime_ns, status.st_size

    @property
    def path(self) -> str:
        """The file as it was asked for."""
        return self._path

    @property
    def capture(self) -> ImageCaptureBase:
        """The capture that stores the frames."""
        return self._capture

    @property
    def frames(self) -> int:
        """How many pictures were taken so far."""
        return self._capture.getImageNum()

    def __enter__(self) -> Self:
        self._start()
        try:
            self._capture.startCapture()
        except BaseException:
            self._finish()
            raise
        return self

    def __exit__(self, kind: object, error: object, trace: object) -> None:
        if not self._finish() and kind is None:
            raise RuntimeError(f"the recording {self._path!r} could not be finished; the log tells why")

    def _finish(self):
        if self._isVideo:
            done = self._capture.stopProcess() or (not self._capture.hasActiveVideo() and self._identity() not in (None, self._before))
        else:
            # A run that has ended has stopped the capture already.
            done = self._capture.stopCapture() or self._last_image_exists()
        if self._end:
            self._end()
        return done

    def _last_image_exists(self):
        import os
        prefix, suffix = os.path.splitext(self._path)
        return self.frames > 0 and os.path.exists(f"{prefix}{self.frames - 1:05}{suffix}")


def _record_application(application, path, settings):
    import os
    isVideo = _is_video(path)
    capture = application.getVideoServerCapture() if isVideo else application.getImageCapture()
    if capture is None:
        raise RuntimeError("record: the application has no graphics")

    def start():
        if capture.getCaptureStarted() or (isVideo and capture.hasActiveVideo()):
            raise RuntimeError(f"record: the application is already recording, {path!r} has to wait")
        if isVideo:
            settings.apply_to_video(capture, path, os.path.splitext(path)[1].lower())
        else:
            settings.apply_to_images(capture, path)

    return Recording(capture, path, start)


def _record_target(target, path, simulation, settings):
    import os
    isVideo = _is_video(path)
    if isVideo:
        size = target.getSize()
        capture = VideoFFMPEGPipeCapture(size[0], size[1], settings.fps, simulation)
        settings.apply_to_video(capture, path, os.path.splitext(path)[1].lower())
    else:
        capture = ImageCapture(simulation)
        settings.apply_to_images(capture, path)

    def start():
        if target.getImageCapture() is not None:
            raise RuntimeError(f"record: the target already has a capture, {path!r} has to wait")
        target.setImageCapture(capture)

    def end():
        present = target.getImageCapture()
        if present is not None and present.this == capture.this:
            target.setImageCapture(None)

    return Recording(capture, path, start, end)


def _run_tool(arguments):
    import subprocess
    try:
        return subprocess.run(arguments, capture_output=True, check=True).stdout
    except subprocess.CalledProcessError as error:
        raise RuntimeError(error.stderr.decode(errors="replace").strip() or f"{arguments[0]} failed") from None


def videoFrames(path: str, count: int | None = None) -> list[numpy.typing.NDArray[numpy.uint8]]:
    """
    Returns the frames of a video or an animated picture as numpy arrays of height x width x 3, first row highest.

    :param path: the file
    :param count: how many are wanted, spread evenly over the whole; all if it is not given
    """
    import json
    import subprocess
    import numpy
    told = json.loads(_run_tool(["ffprobe", "-v", "error", "-select_streams", "v:0", "-count_frames", "-show_entries",
                                 "stream=width,height,nb_read_frames", "-of", "json", path]))["streams"][0]
    width, height, total = told["width"], told["height"], int(told["nb_read_frames"])
    wanted = range(total) if count is None else [round(i * (total - 1) / max(count - 1, 1)) for i in range(count)]
    decoder = subprocess.Popen(["ffmpeg", "-v", "error", "-nostdin", "-i", path, "-fps_mode", "passthrough", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                               stdout=subprocess.PIPE)
    kept = {}
    with decoder:
        for number in range(total):
            raw = decoder.stdout.read(width * height * 3)
            if len(raw) == width * height * 3 and number in wanted:
                kept[number] = numpy.frombuffer(raw, numpy.uint8).reshape(height, width, 3)
    return [kept[number] for number in wanted if number in kept]


def _picture_pixels(picture):
    import numpy
    if isinstance(picture, str):
        image = osgDB.readImageFile(picture)
        if image is None:
            raise RuntimeError(f"no picture can be read from {picture!r}")
        picture = image
    if isinstance(picture, (osg.Image, RenderToImage)):
        picture = picture.asArray(topFirst=True)
    pixels = numpy.asarray(picture)
    if pixels.ndim == 2:
        pixels = pixels[..., None]
    if pixels.ndim != 3 or pixels.dtype != numpy.uint8:
        raise ValueError(f"a picture has 8-bit pixels in height x width x components, not {pixels.dtype} in {pixels.shape}")
    return numpy.repeat(pixels[..., :1], 3, axis=2) if pixels.shape[2] < 3 else pixels[..., :3]


def contactSheet(pictures: Iterable[str | osg.Image | RenderToImage | Buffer], columns: int | None = None, *, width: int | None = None,
                 gap: int = 8, background: tuple[int, int, int] = (255, 255, 255), path: str | None = None) -> osg.Image:
    """
    Returns a picture of many pictures side by side in rows, such as the frames that videoFrames() gives.

    :param pictures: names of files, images, targets, or arrays of height x width x components whose first row is the highest
    :param columns: pictures in a row; as many as rows if it is not given
    :param width: width of each picture in pixels, which then is scaled; that of the widest if it is not given
    :param gap: pixels between pictures and around them
    :param background: red, green and blue of what is between them, 0 to 255
    :param path: file to write the sheet to, if any
    """
    import math
    import numpy
    cells = []
    for picture in pictures:
        pixels = _picture_pixels(picture)
        if width is not None and pixels.shape[1] != width:
            image = osg.Image.fromArray(pixels, True)
            image.scale(width, max(round(pixels.shape[0] * width / pixels.shape[1]), 1))
            pixels = image.asArray(topFirst=True)
        cells.append(pixels)
    if not cells:
        raise ValueError("a contact sheet needs a picture")
    columns = columns if columns is not None else math.ceil(math.sqrt(len(cells)))
    if columns < 1 or gap < 0:
        raise ValueError("a contact sheet needs a column, and gaps of 0 pixels or more")
    rows, columns = -(-len(cells) // columns), min(columns, len(cells))
    cellHeight, cellWidth = (max(cell.shape[axis] for cell in cells) for axis in (0, 1))
    sheet = numpy.empty((rows * (cellHeight + gap) + gap, columns * (cellWidth + gap) + gap, 3), numpy.uint8)
    sheet[:] = background
    for number, cell in enumerate(cells):
        y = gap + number // columns * (cellHeight + gap) + (cellHeight - cell.shape[0]) // 2
        x = gap + number % columns * (cellWidth + gap) + (cellWidth - cell.shape[1]) // 2
        sheet[y:y + cell.shape[0], x:x + cell.shape[1]] = cell
    image = osg.Image.fromArray(sheet, True)
    if path is not None and not osgDB.writeImageFile(image, path):
        raise RuntimeError(f"the contact sheet {path!r} could not be written")
    return image
%}
