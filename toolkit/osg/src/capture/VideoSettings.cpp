#include "VideoSettings.h"

#include "AtomicFile.h"

#include <sstream>

namespace zorOSG {

namespace {

constexpr double s_fastestGif = 50.0; // viewers show anything faster at a tenth of its speed
constexpr unsigned int s_worstCrf = 51;

using Arguments = std::vector<std::string>;

void add(Arguments& arguments, std::initializer_list<std::string> more) {
  arguments.insert(arguments.end(), more);
}

Arguments commonArguments() {
  return {"ffmpeg", "-hide_banner", "-loglevel", "error", "-nostdin", "-y"};
}

/**
 * Chroma at half resolution needs an even size. Players take a video that does not name its colours, as those
 * of the old codec, for one of the old standard.
 */
void addColors(Arguments& arguments, bool isOld) {
  std::string const matrix = isOld ? "bt601" : "bt709", name = isOld ? "smpte170m" : "bt709";
  add(arguments, {"-vf",
                  "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2,scale=out_color_matrix=" + matrix +
                      ":out_range=tv:flags=bicubic+accurate_rnd+full_chroma_int",
                  "-pix_fmt", "yuv420p", "-colorspace", name, "-color_primaries", name, "-color_trc", name,
                  "-color_range", "tv"});
}

/** The encoder of XVID has no rate factor, but a quantiser from 1 (best) to 31, whose steps are felt less and
 * less. */
std::string quantiserText(unsigned int crf) {
  constexpr unsigned int range = 30;
  return std::to_string(1 + range * crf * crf / (s_worstCrf * s_worstCrf));
}

/** What is written must stay readable if the encoder or the disk gives up. */
void addContainer(Arguments& arguments, std::string const& suffix) {
  if (suffix == ".mp4" || suffix == ".mov" || suffix == ".m4v")
    add(arguments, {"-movflags", "+hybrid_fragmented", "-frag_duration", "500000"});
  else if (suffix == ".mkv" || suffix == ".webm")
    add(arguments, {"-cluster_time_limit", "500"});
  add(arguments, {"-flush_packets", "1"});
}

std::string numberText(double number) {
  std::ostringstream text;
  text.precision(12);
  text << number;
  return text.str();
}

} // namespace

bool VideoSettings::isAnimation() const {
  std::string const suffix = output.extension().string();
  return suffix == ".gif" || suffix == ".webp" || suffix == ".apng";
}

std::filesystem::path VideoSettings::recording() const {
  std::filesystem::path path = partialName(output);
  return isAnimation() ? path.replace_extension(".mkv") : path;
}

Arguments VideoSettings::recordingArguments(std::filesystem::path const& pipe) const {
  Arguments arguments = commonArguments();
  add(arguments, {"-f", "rawvideo", "-pixel_format", "rgb0", "-video_size",
                  std::to_string(width) + "x" + std::to_string(height), "-framerate", numberText(fps), "-i",
                  pipe.string(), "-an"});
  // Frames come bottom row first.
  if (isAnimation()) {
    add(arguments,
        {"-vf", "vflip", "-c:v", "libx264rgb", "-preset", "ultrafast", "-qp", "0", "-pix_fmt", "bgr0"});
  } else if (codec == "libxvid") {
    add(arguments, {"-c:v", codec, "-q:v", quantiserText(lossless ? 0 : crf)});
    addColors(arguments, true);
  } else {
    add(arguments, {"-c:v", codec, "-preset", "veryfast"});
    lossless ? add(arguments, {"-qp", "0"}) : add(arguments, {"-crf", std::to_string(crf)});
    if (codec == "libx264rgb")
      add(arguments, {"-vf", "vflip", "-pix_fmt", "bgr0"});
    else
      addColors(arguments, false);
  }
  addContainer(arguments, recording().extension().string());
  add(arguments, {"file:" + recording().string()});
  return arguments;
}

Arguments VideoSettings::animationArguments(std::filesystem::path const& animation) const {
  Arguments arguments = commonArguments();
  add(arguments, {"-i", "file:" + recording().string()});
  std::string const suffix = output.extension().string();
  if (suffix == ".gif") {
    std::string const slower = fps > s_fastestGif ? "fps=" + numberText(s_fastestGif) + "," : "";
    add(arguments, {"-filter_complex",
                    slower + "split[a][b];[a]palettegen=stats_mode=diff[p];"
                             "[b][p]paletteuse=dither=bayer:bayer_scale=4:diff_mode=rectangle",
                    "-loop", "0"});
  } else if (suffix == ".webp") {
    add(arguments, {"-c:v", "libwebp_anim", "-loop", "0", "-lossless", lossless ? "1" : "0", "-quality",
                    std::to_string(100 - crf * 100 / s_worstCrf)});
  } else {
    add(arguments, {"-f", "apng", "-plays", "0"});
  }
  add(arguments, {"file:" + animation.string()});
  return arguments;
}

} // namespace zorOSG
