#pragma once

#include <zor/HashTable.h>
#include <zorOSG/ImageCaptureBase.h>

#include <memory>
#include <mutex>

namespace zorOSG {

class FfmpegProcess;

/**
 * Makes a video file by feeding captured frames through a named pipe to an `ffmpeg` process.
 *
 * The file grows under a temporary name beside its final one and is renamed when the encoder has finished
 * without an error, so a file with the final name is always whole. If the encoder fails (a full disk, a
 * crash), capturing stops with an error in the log, and what was stored until then is kept as
 * "name.incomplete.mp4" where it can be played. A video that runs when the program ends is finished.
 *
 * A file name that ends in ".gif", ".webp" or ".apng" makes an animated picture that repeats for ever: its
 * frames are stored without loss first, whatever the codec, and encoded when the capture is stopped.
 */
class VideoFFMPEGPipeCapture : public ImageCaptureBase {
public:
  /** Video codecs; OutputCodecStrings holds the encoder's name of each. */
  enum OutputCodec : int {
    OutputCodec_H264 = 0, ///< H.264 with colours at half the resolution, which every player shows.
    OutputCodec_H264RGB =
        1,               ///< H.264 with full colours, which few players show; lossless, it keeps every bit.
    OutputCodec_XVID = 2 ///< MPEG-4 Part 2, for old players.
  };

  /** Hash of a codec. */
  struct CodecHash {
    std::size_t operator()(OutputCodec codec) const { return static_cast<std::size_t>(codec); }
  };

  typedef zor::HashTable<enum zorOSG::VideoFFMPEGPipeCapture::OutputCodec, zor::String, CodecHash>
      CodecStringConversionMap;

  /**
   * \param width - width of the finished video in pixels, 2 to 16384; all codecs but H264RGB pad an odd one
   * by a pixel.
   * \param height - height of the finished video in pixels, 2 to 16384; padded likewise.
   * \param fps - video rate and capture rate (images per second).
   * \param sim - simulation to synchronise with; may be null.
   * \throws std::invalid_argument for a size or rate outside its range.
   */
  VideoFFMPEGPipeCapture(zor::UInt width, zor::UInt height, zor::Real fps, zorSDK::Simulation* sim = nullptr);

  /** The encoder's codec name of each codec. */
  static CodecStringConversionMap OutputCodecStrings;

  /**
   * Creates the named pipe and starts the encoder process; startCapture() does it if it has not been done.
   * \throws std::runtime_error if `ffmpeg` is not found, the folder of the video file can't be written to or
   * the pipe can't be made (in the folder that the environment variable TMPDIR names, else /tmp). Settings
   * that the encoder refuses show with the first frames, as an error in the log, and in stopProcess().
   */
  void init();

  /** \param filename - path of the video file including the extension. */
  void setFilename(zor::String filename);

  /** \return path of the video file including the extension. */
  zor::String getFilename() const;

  /** \param extension - extension without the dot; replaces that of the file name. */
  void setFilenameExtension(zor::String extension);

  /** \return the extension of the file name without the dot. */
  zor::String getFilenameExtension() const;

  /** \param fps - rate at which the video plays (frames per second). */
  void setVideoFPS(zor::Real fps);

  /** \return the rate at which the video plays. */
  zor::Real getVideoFPS() const;

  /** \param crf - the encoder's constant rate factor, 0 to 51; lower is better and larger. */
  void setVideoCRF(zor::UInt crf);

  /** \return the encoder's constant rate factor. */
  zor::UInt getVideoCRF() const;

  /** \param fps - capture rate; the video plays in real time if it equals the video's rate. */
  void setImageCaptureFPS(zor::Real fps);

  /** \return the capture rate. */
  zor::Real getImageCaptureFPS() const;

  /**
   * Chooses encoding without loss, which older players can't play. H264RGB then keeps the colours bit for
   * bit; H264 loses nothing of the colours at half resolution that it is given. XVID has no such mode and
   * encodes at its best.
   * \param lossless - true for lossless encoding
   */
  void setEnableLossless(bool lossless);

  /** \return true if encoding is lossless. */
  bool getEnableLossless() const;

  /** \param codec - the codec used from the next init() on. */
  void setOutputVideoCodec(OutputCodec codec);

  /** \return the codec. */
  OutputCodec getOutputCodec() const;

  /** \return true while a video is being created. */
  bool hasActiveVideo() const;

  /**
   * Stops capturing, closes the pipe and waits for the encoder to finish the file.
   * \return false if the encoder returned non-zero, a frame could not be delivered, no frame came or no video
   * was active; without a frame no file is stored.
   */
  bool stopProcess();

  void startCapture(int start = 0) override;

  void writeImage(osg::Image* image, zor::Index index) override;

#ifndef SWIG
  /** Finishes all videos that are being created. Runs by itself when the program ends by exit(). */
  static void finishAll();
#endif

protected:
  ~VideoFFMPEGPipeCapture() override;
  void writeFrame(osg::Image* frame, zor::Index first, zor::Index count) override;

private:
  osg::Image* fittedFrame(osg::Image* image);

  std::unique_ptr<FfmpegProcess> m_encoder;
  std::mutex m_encoderMutex;
  osg::ref_ptr<osg::Image> m_frame;
  zor::Vec2u m_size;
  zor::String m_filename = "video.mp4";
  zor::Real m_videoFps;
  zor::UInt m_crf = 20;
  bool m_lossless = false;
  OutputCodec m_codec = OutputCodec_H264;
};

} // namespace zorOSG
